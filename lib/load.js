'use strict';

// Finds the addon's binary and loads it.

// Also read by versions of Node.js that are refused: no syntax that these do not know.
const path = require('path');
const { inspectBinary } = require('./binary_file.js');
const { explainFailure, isForeign, isTooOld } = require('./load_failure.js');

const root = path.join(__dirname, '..');

/** Where a binary may be, in the order in which they are tried. */
function candidates(platform = process.platform, arch = process.arch) {
  return [
    path.join(root, 'prebuilds', `${platform}-${arch}`, 'deskhand.node'),
    path.join(root, 'build', 'release', 'deskhand.node'),
  ];
}

/** The version of the GNU C library; undefined where there is none. Costs some milliseconds. */
function glibcVersion() {
  if (process.platform !== 'linux' || !process.report) return undefined;
  return process.report.getReport().header.glibcVersionRuntime;
}

/** What the reasons for a failure are told from. */
function circumstances() {
  const { platform, arch } = process;
  const { node, napi } = process.versions;
  return { platform, arch, versions: { node, napi, glibc: glibcVersion() }, folder: root };
}

function failureError(failures) {
  const { message, hint } = explainFailure({ ...circumstances(), failures });
  const error = new Error(message);
  error.code = 'ERR_DESKHAND_LOAD';
  error.hint = hint;
  // A binary that is there, and does not load, says more than one that is missing.
  const first = failures.find(({ binary }) => binary) || failures[0];
  if (first && first.error) error.cause = first.error;
  return error;
}

/** The loaded binary, or why it was not: { addon } or { failure }. */
function tryToLoad(file) {
  let binary;
  try {
    binary = inspectBinary(file);
    // Loading what was cut off can end the process with a bus error.
    const isLoadable = binary && binary.isWhole && !isForeign(binary, process);
    if (isLoadable) return { addon: require(file) };
    const error = new Error(binary ? `${file} is not a binary for here` : `${file} does not exist`);
    return { failure: { file, binary, error, message: '' } };
  } catch (error) {
    return { failure: { file, binary: binary || {}, error, message: String(error.message) } };
  }
}

/** The first binary that there is, and where it is: { addon, file }. */
function loadFirst(files) {
  if (isTooOld(process.versions)) throw failureError([]);
  const failures = [];
  for (const file of files) {
    const { addon, failure } = tryToLoad(file);
    if (addon) return { addon, file };
    failures.push(failure);
  }
  throw failureError(failures);
}

/**
 * Loads the first binary that there is. Throws an error with the code 'ERR_DESKHAND_LOAD', whose
 * message says what was tried, why each failed and what to do; `hint` is the last part alone.
 */
function load(files = candidates()) {
  return loadFirst(files).addon;
}

/**
 * Loads the binary of the run loop, which stands beside the addon's, and the addon before it:
 * { native, addonFile }. Throws as load() does.
 */
function loadRunLoop(files = candidates()) {
  const { file } = loadFirst(files);
  return { native: load([path.join(path.dirname(file), 'run_loop.node')]), addonFile: file };
}

module.exports = { candidates, load, loadRunLoop };
