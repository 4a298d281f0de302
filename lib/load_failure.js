'use strict';

// Why the addon could not be loaded, and what to do about it: from what the loaders of Linux and macOS say.

// Also read by versions of Node.js that are refused: no syntax that these do not know.
const { ALL_PACKAGES, packageOf } = require('./debian_packages.js');

const LEAST_NODE_API = 8;
const LEAST_NODE = 18;
/** What the package comes with binaries for, and what it can be built for. */
const SUPPORTED = ['darwin-arm64', 'linux-x64', 'linux-arm64'];
const FORMATS = { linux: 'ELF', darwin: 'Mach-O' };

function isTooOld({ node, napi }) {
  return parseInt(node, 10) < LEAST_NODE || parseInt(napi, 10) < LEAST_NODE_API;
}

/** Whether a binary was made for another system or processor. */
function isForeign(binary, { platform, arch }) {
  if (!binary.format) return false;
  return binary.format !== (FORMATS[platform] || binary.format) || binary.arch !== arch;
}

/** What one loader's message means: [pattern, what it says, what to do about it]. */
const MESSAGES = [
  [
    /(\S+): version [`']((?:GLIBC|GLIBCXX|CXXABI|GCC)_[\d.]+)' not found/,
    ([, library, version]) => `${library.split('/').pop()} is too old here: ${version} is needed`,
    () =>
      'Use a newer Linux distribution (Debian 12 or Ubuntu 22.04, or later), in a container, for example; ' +
      'or build deskhand on this machine with "npm ci && npm run build" in a copy of its source.',
  ],
  [
    /different Team IDs/,
    () => 'it is not signed by the team that signed the program which loads it',
    ({ file }) =>
      `Sign it with the identity of the program: codesign --force --sign <identity> "${file}"; or give the ` +
      'program the entitlement com.apple.security.cs.disable-library-validation.',
  ],
  [
    /library load disallowed by system policy/,
    () => 'macOS has put it into quarantine, as a file that came from elsewhere',
    ({ file }) => `Take it out of quarantine: xattr -d com.apple.quarantine "${file}"`,
  ],
  [
    /mapped file has no cdhash|completely unsigned|code signature invalid|not valid for use in process/,
    () => 'it is not signed, or its signature does not fit it (any more)',
    ({ file }) =>
      `Sign it: codesign --force --sign - "${file}". A program that is distributed signs it with its own ` +
      'identity instead of "-".',
  ],
  [
    /incompatible architecture \(have '([^']+)', need '([^']+)'\)/,
    ([, have, need]) => `it is made for ${have}, and this program needs ${need}`,
    ({ platform, arch }) => adviceForArch(platform, arch),
  ],
  [
    /Library not loaded: (\S+)|Symbol not found: (\S+)/,
    ([, library, symbol]) => `this system does not have ${library || symbol}`,
    () => 'Update macOS: deskhand needs version 14 or later.',
  ],
  [
    /not a mach-o file|slice is not valid mach-o file|file too short|invalid ELF header|cannot read file data/,
    () => 'it is not a binary, or a damaged one',
    () =>
      'Install deskhand again: the file is damaged. Tools that copy packages may replace binaries.',
  ],
  [
    /undefined symbol: (napi_\w+|node_api_\w+)/,
    ([, symbol]) => `the program that loads it has no ${symbol}`,
    () =>
      `Use a program with Node-API ${LEAST_NODE_API} or later: Node.js ${LEAST_NODE} or later, or its like.`,
  ],
  [
    /failed to map segment from shared object/,
    () => 'the system does not let code be run from there',
    () => 'Install deskhand on a file system that is not mounted with the option "noexec".',
  ],
  [
    /Permission denied|EACCES/,
    () => 'it may not be read',
    ({ file }) => `Make it readable: chmod a+r "${file}", and the folders that it is in.`,
  ],
];

/** On Linux: the library that the GNU or the musl loader misses. */
const MISSING_LIBRARY =
  /^(?:Error: )?(\S+): cannot open shared object file: No such file|Error loading shared library ([^:\s]+): No such file/;

const ADVICE_FOR_MUSL =
  'Use a Linux distribution with the GNU C library, such as Debian: this one (Alpine?) has another.';

function adviceForLibrary(library) {
  const name = packageOf(library);
  const all = `apt-get install -y ${ALL_PACKAGES.join(' ')}`;
  return name
    ? `On Debian and Ubuntu ${library} is in the package ${name}. All that deskhand needs: ${all}`
    : `Install the package of your distribution that has ${library}.`;
}

function adviceForArch(platform, arch) {
  if (platform === 'darwin' && arch === 'x64') {
    return (
      'Use Node.js for Apple silicon (arm64): this one is made for Intel processors. On a Mac with Apple ' +
      'silicon it runs under Rosetta; Macs with Intel processors are not supported.'
    );
  }
  return (
    `Install deskhand again on this machine, with the program that will load it (${platform}-${arch}). ` +
    'A folder node_modules that was copied from another system does not work.'
  );
}

/** { reason, advice } for a file that was there. */
function explainMessage({ file, message }, { platform, arch, versions }) {
  const text = message.trim();
  const missing = platform === 'linux' && MISSING_LIBRARY.exec(text);
  if (missing) {
    const library = missing[1] || missing[2];
    const advice = versions.glibc ? adviceForLibrary(library) : ADVICE_FOR_MUSL;
    return { reason: `the shared library ${library} is missing`, advice };
  }
  for (const [pattern, reason, advice] of MESSAGES) {
    const match = pattern.exec(text);
    if (!match) continue;
    return { reason: reason(match), advice: advice({ file, platform, arch }) };
  }
  return { reason: text.split('\n')[0], advice: undefined };
}

/** { reason, advice } for one file; without advice when it is not there. */
function explainFile(failure, where) {
  const { binary } = failure;
  if (!binary) return { reason: 'there is no such file' };
  if (binary.isWhole === false) {
    return {
      reason: 'it is empty or cut off',
      advice: 'Install deskhand again: the file is damaged. Is the disk full?',
    };
  }
  if (isForeign(binary, where)) {
    const made = `${binary.format}, ${binary.arch || 'another processor'}`;
    return {
      reason: `it is made for another system or processor (${made})`,
      advice: adviceForArch(where.platform, where.arch),
    };
  }
  return explainMessage(failure, where);
}

function adviceForAbsence({ platform, arch, folder }) {
  const target = `${platform}-${arch}`;
  if (platform === 'darwin' && arch === 'x64') return adviceForArch(platform, arch);
  if (!SUPPORTED.includes(target)) {
    return `Use one of the systems that deskhand is made for: ${SUPPORTED.join(', ')}. This is ${target}.`;
  }
  return (
    `Install deskhand again: ${folder} is not complete. In a copy of its source build it: ` +
    '"npm ci && npm run build". If a bundler has packed your program, leave deskhand out of the bundle ' +
    '(declare it external).'
  );
}

/**
 * @param failures `{ file, binary, message }` for each file that was tried: what inspectBinary() says of
 *   it, and the loader's text. None when Node.js is too old for a try.
 * @param versions `{ node, napi, glibc }`; without `glibc` the system has another C library.
 * @returns `message`, the whole, and `hint`, what to do.
 */
function explainFailure({ platform, arch, versions, folder, failures }) {
  const where = { platform, arch, versions, folder };
  const library = versions.glibc ? `, glibc ${versions.glibc}` : '';
  const lines = [
    `deskhand could not be loaded on ${platform}-${arch} (Node.js ${versions.node}${library}).`,
  ];
  const advice = new Set();
  if (isTooOld(versions)) {
    lines.push(
      `It needs Node.js ${LEAST_NODE} or later, with Node-API ${LEAST_NODE_API} or later.`,
    );
    advice.add(`Use Node.js ${LEAST_NODE} or later; this is ${versions.node}.`);
  }
  if (failures.length > 0) lines.push('Tried:');
  for (const failure of failures) {
    const explained = explainFile(failure, where);
    lines.push(`  ${failure.file}: ${explained.reason}`);
    if (explained.advice) advice.add(explained.advice);
  }
  if (advice.size === 0) advice.add(adviceForAbsence(where));
  const hint = [...advice].join('\n');
  lines.push('What to do:', ...[...advice].map((text) => `  ${text}`));
  return { message: lines.join('\n'), hint };
}

module.exports = { explainFailure, isForeign, isTooOld };
