'use strict';

// What works here, and what to do about what does not.
const { version } = require('../../package.json');
const { candidates } = require('../load.js');
const { attribution } = require('./attribution.js');
const { accessibilityHint, displayHint, hintFor, recordingHint } = require('./hints.js');
const { serviced } = require('./native.js');
const { harmless } = require('./output.js');

const works = (name, detail) => ({ name, ok: true, detail });
const fails = (name, detail, hint) => ({ name, ok: false, detail, hint: hint ?? null });

function checkSession() {
  const { DISPLAY, WAYLAND_DISPLAY } = process.env;
  if (process.platform !== 'linux') return [];
  const session = works('session', `X11, DISPLAY=${DISPLAY ?? ''}`);
  if (!WAYLAND_DISPLAY) return [session];
  const note =
    'This session is Wayland: of its programs only those that use X11 are seen and operated.';
  return [
    { ...session, hint: `${note} Log in with X11 ("on Xorg"), or use a server of its own (Xvfb).` },
  ];
}

function checkDisplays(displays) {
  if (displays.length === 0) return [fails('displays', 'none', displayHint())];
  return displays.map(({ id, name, width, height, originX, originY, scaleFactor, isMain }) => {
    const scale = scaleFactor === 1 ? '' : `, ${scaleFactor} pixels a point`;
    const place = `${width} x ${height} at ${originX},${originY}${scale}`;
    return works(isMain ? 'main display' : 'display', `${id} ${harmless(name)}: ${place}`);
  });
}

function checkPermissions(addon, program, isAsking, hasDisplays) {
  const recording = isAsking ? addon.requestScreenRecording() : addon.checkScreenRecording();
  const input = isAsking ? addon.requestAccessibility() : addon.checkAccessibility();
  return [
    recording
      ? works('screen', 'may be read')
      : fails('screen', 'may not be read', recordingHint(program?.name)),
    input
      ? works('input', 'mouse and keyboard may be used')
      : fails(
          'input',
          'mouse and keyboard may not be used',
          hasDisplays || process.platform !== 'linux' ? accessibilityHint(program?.name) : displayHint(),
        ),
  ];
}

async function checkScreenshot(addon) {
  const start = performance.now();
  try {
    const { base64, width, height } = await serviced(() => addon.captureDisplay([]));
    const milliseconds = Math.round(performance.now() - start);
    const bytes = Math.floor((base64.length * 3) / 4);
    const detail = `${width} x ${height} pixels, ${Math.round(bytes / 1024)} KiB, in ${milliseconds} ms`;
    return { ...works('screenshot', detail), milliseconds };
  } catch (error) {
    return fails('screenshot', error.message, hintFor(error));
  }
}

function checkBinary(load) {
  try {
    const addon = load();
    return {
      addon,
      check: works(
        'binary',
        candidates().find((file) => require.cache[file]),
      ),
    };
  } catch (error) {
    return { check: fails('binary', error.message.split('\n')[0], error.hint) };
  }
}

async function examine(load, isAsking) {
  const program = attribution();
  const { addon, check } = checkBinary(load);
  const checks = [check, ...checkSession()];
  const displays = addon ? addon.listDisplays() : [];
  if (addon) {
    checks.push(...checkDisplays(displays));
    checks.push(...checkPermissions(addon, program, isAsking, displays.length > 0));
    checks.push(await checkScreenshot(addon));
  }
  return { program, displays, checks };
}

function describe({ platform, arch, versions, program, checks }) {
  const width = Math.max(...checks.map(({ name }) => name.length));
  // Several failures may have one remedy: it is told with the first of them.
  const isNew = ({ hint }, index) =>
    hint && checks.findIndex((check) => check.hint === hint) === index;
  const lines = checks.flatMap((check, index) => [
    `${check.ok ? 'ok  ' : 'FAIL'}  ${check.name.padEnd(width)}  ${check.detail}`,
    ...(isNew(check, index) ? check.hint.split('\n').map((text) => `      ${text}`) : []),
  ]);
  const title = `deskhand ${versions.deskhand} on ${platform}-${arch}, Node.js ${versions.node}, Node-API ${versions.napi}`;
  const asked = program
    ? [`macOS lists this program's permissions under "${program.name}" (${program.path}).`]
    : [];
  const failed = checks.filter(({ ok }) => !ok).length;
  const verdict = failed === 0 ? 'All works.' : `${failed} of ${checks.length} do not work.`;
  return [title, ...asked, '', ...lines, '', verdict].join('\n');
}

async function doctor({ options, load }) {
  const { program, displays, checks } = await examine(load, options.ask);
  const { node, napi } = process.versions;
  const ok = checks.every((check) => check.ok);
  const value = {
    ok,
    platform: process.platform,
    arch: process.arch,
    versions: { deskhand: version, node, napi },
    permissionsOf: program,
    displays,
    checks,
  };
  return { value, text: describe({ ...value, program }), status: ok ? 0 : 1 };
}

module.exports = {
  name: 'doctor',
  summary: 'tell what works here, and what to do about what does not',
  description:
    'Tells what works here, and what to do about what does not: binary, displays, permissions, a screenshot. The ' +
    'status is 1 when something does not work.',
  options: [['--ask', 'let macOS ask the user for permissions that are missing']],
  examples: ['deskhand doctor', 'deskhand doctor --ask', 'deskhand doctor --json'],
  run: doctor,
};
