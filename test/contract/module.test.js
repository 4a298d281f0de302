'use strict';
// Loading the addon: its entry points, its table of functions, and that nothing else happens.
const assert = require('node:assert/strict');
const { execFileSync } = require('node:child_process');
const { test } = require('node:test');

const { addon, addonPath, doubles } = require('./harness');
const { runScript } = require('./child');

const names = [
  'captureDisplay', 'captureRegion', 'calculateTargetSize',
  'mouseClick', 'mouseMove', 'mouseDrag', 'mouseDown', 'mouseUp', 'scroll', 'getCursorPosition',
  'typeText', 'keyPress', 'keyHold',
  'listRunningApps', 'listInstalledApps', 'resolveAppName', 'getFrontmostApp', 'appUnderPoint',
  'openApp', 'hideApps', 'unhideApps', 'getWindowList', 'listDisplays', 'getDisplaySize',
  'readClipboard', 'writeClipboard',
  'checkAccessibility', 'requestAccessibility', 'checkScreenRecording', 'requestScreenRecording',
];

/** Loads the addon a further time, into an exports object of the test's choice. */
function loadInto(exports) {
  const module = { exports };
  process.dlopen(module, addonPath);
  return module;
}

test('the exports are the functions of the table, in its order, and nothing else', () => {
  assert.deepEqual(Object.getOwnPropertyNames(addon), names);
  assert.deepEqual(Object.getOwnPropertySymbols(addon), []);
  for (const name of names) assert.equal(typeof addon[name], 'function');
});

test('the exports are thirty functions', () => {
  assert.equal(Object.keys(addon).length, 30);
  assert.deepEqual(Object.keys(addon), names);
});

test('each function is named as it is exported', () => {
  assert.deepEqual(names.map((name) => addon[name].name), names);
});

test('loading hands back the very exports object that it was given', () => {
  const exports = {};
  assert.equal(loadInto(exports).exports, exports);
  assert.deepEqual(Object.keys(exports), names);
});

test('loading leaves what else is on the exports object alone', () => {
  const exports = { before: 1 };
  loadInto(exports);
  assert.deepEqual(Object.keys(exports), ['before', ...names]);
  assert.equal(exports.before, 1);
});

test('two loads give two sets of functions that both work', () => {
  const first = loadInto({}).exports;
  const second = loadInto({}).exports;
  assert.notEqual(first.calculateTargetSize, second.calculateTargetSize);
  for (const { calculateTargetSize } of [first, second]) {
    assert.deepEqual(calculateTargetSize(2880, 1800), { width: 1390, height: 868 });
  }
});

test('a name that cannot be attached is missing, the others are there, and its error is thrown',
  () => {
    const refusal = new Error('not this one');
    const exports = Object.defineProperty({}, 'calculateTargetSize', {
      set() { throw refusal; },
    });
    assert.throws(() => loadInto(exports), (error) => error === refusal);
    assert.deepEqual(Object.keys(exports), names.filter((name) => name !== 'calculateTargetSize'));
    assert.deepEqual(exports.listDisplays.name, 'listDisplays');
  });

test('when several names cannot be attached, the first one\'s error is thrown', () => {
  const exports = {};
  const attempts = [];
  for (const name of names.slice(0, 2)) {
    Object.defineProperty(exports, name, {
      set() { attempts.push(name); throw new Error(name); },
    });
  }
  assert.throws(() => loadInto(exports), { message: names[0] });
  assert.deepEqual(attempts, names.slice(0, 2));
  assert.deepEqual(Object.keys(exports), names.slice(2));
});

test('the binary exports its entry points and no other function of its own', () => {
  const listing = execFileSync('nm', ['--dynamic', '--defined-only', addonPath],
    { encoding: 'utf8', env: { ...process.env, LD_PRELOAD: '' } });
  const functions = listing.trim().split('\n').map((line) => line.split(' '))
    // Weak symbols are the standard library's templates, and data the language's.
    .filter(([, type]) => type === 'T').map(([, , name]) => name);
  assert.deepEqual(functions.sort(), [
    // For the run loop's addon; JavaScript does not see them.
    'deskhand_unwatch_promises', 'deskhand_watch_promises',
    'napi_register_module_v1', 'node_api_module_get_api_version_v1',
  ]);
});

test('the addon asks for version 8 of Node-API', () => {
  assert.equal(doubles.callExport(addonPath, 'node_api_module_get_api_version_v1'), 8);
});

test('loading starts no thread, opens no file and calls no framework', async () => {
  const { before, after, calls } = await runScript('load_quietly.js');
  assert.deepEqual(after, before);
  assert.ok(before.threads > 0 && before.files > 0);
  assert.deepEqual(calls, []);
});
