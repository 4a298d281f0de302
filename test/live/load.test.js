'use strict';

// What loading the addon does, and what it leaves undone.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const path = require('node:path');
const addon = require('../support/addon.js');
const { runScript } = require('../support/scripts.js');
const { startXServer } = require('../support/x_server.js');

const NAMES = [
  'captureDisplay',
  'captureRegion',
  'calculateTargetSize',
  'mouseClick',
  'mouseMove',
  'mouseDrag',
  'mouseDown',
  'mouseUp',
  'scroll',
  'getCursorPosition',
  'typeText',
  'keyPress',
  'keyHold',
  'listRunningApps',
  'listInstalledApps',
  'resolveAppName',
  'getFrontmostApp',
  'appUnderPoint',
  'openApp',
  'hideApps',
  'unhideApps',
  'getWindowList',
  'listDisplays',
  'getDisplaySize',
  'readClipboard',
  'writeClipboard',
  'checkAccessibility',
  'requestAccessibility',
  'checkScreenRecording',
  'requestScreenRecording',
];

const binary = Object.keys(require.cache).find((file) => file.endsWith('.node'));

describe('loading the addon', () => {
  test('starts no thread, opens no file and connects to no server', async (t) => {
    const { env } = await startXServer(t);
    const script = path.join(__dirname, 'scripts', 'report_loading.js');
    const { code, errors, messages } = await runScript(t, script, { env });
    assert.equal(code, 0, errors);
    const [{ before, loaded, used }] = messages;
    assert.deepEqual(loaded, before);
    // Otherwise the comparison would prove nothing.
    assert.ok(used.threads > loaded.threads, 'a picture needs threads');
    assert.ok(used.files > loaded.files, 'a picture needs a connection');
  });

  test('gives the functions in order, and nothing else', () => {
    assert.deepEqual(Object.getOwnPropertyNames(addon), NAMES);
    assert.deepEqual(Object.getOwnPropertySymbols(addon), []);
  });

  test('gives functions that know their names', () => {
    for (const name of NAMES) {
      assert.equal(typeof addon[name], 'function');
      assert.equal(addon[name].name, name);
    }
  });

  test('by the package gives the very object that the binary fills', () => {
    assert.equal(require(binary), addon);
    const module = { exports: {} };
    const { exports } = module;
    process.dlopen(module, binary);
    assert.equal(module.exports, exports, 'filled, not replaced');
    assert.deepEqual(Object.keys(exports), NAMES);
    assert.deepEqual(exports.calculateTargetSize(1920, 1080), { width: 1456, height: 819 });
  });

  test('goes on when a name cannot be attached, and throws at the end', () => {
    const module = { exports: {} };
    const refusal = new Error('not this name');
    Object.defineProperty(module.exports, 'captureRegion', {
      get: () => undefined,
      set: () => {
        throw refusal;
      },
    });
    assert.throws(
      () => process.dlopen(module, binary),
      (error) => error === refusal,
    );
    for (const name of NAMES) {
      const expected = name === 'captureRegion' ? 'undefined' : 'function';
      assert.equal(typeof module.exports[name], expected);
    }
  });
});
