'use strict';
// The four permission functions: one call each, nothing remembered.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene } = require('./harness');

const functions = [
  ['checkAccessibility', 'isTrusted', ['AXIsProcessTrusted']],
  ['requestAccessibility', 'isTrusted',
    ['AXIsProcessTrustedWithOptions', { AXTrustedCheckOptionPrompt: true }]],
  ['checkScreenRecording', 'mayReadScreen', ['CGPreflightScreenCaptureAccess']],
  ['requestScreenRecording', 'mayReadScreen', ['CGRequestScreenCaptureAccess']],
];

for (const [name, permission, call] of functions) {
  test(`${name} is false without the permission and true with it, by exactly one call`, (t) => {
    const mac = scene(t, { [permission]: false });
    assert.equal(mac.addon[name](), false);
    assert.deepEqual(mac.calls(), [call]);
    mac.change({ [permission]: true });
    assert.equal(mac.addon[name](), true);
    assert.deepEqual(mac.calls(), [call, call]);
  });

  test(`${name} sees a permission that is taken away again`, (t) => {
    const mac = scene(t, { [permission]: true });
    assert.equal(mac.addon[name](), true);
    mac.change({ [permission]: false });
    assert.equal(mac.addon[name](), false);
  });

  test(`${name} goes by its own permission alone`, (t) => {
    const mac = scene(t, { isTrusted: true, mayReadScreen: true, [permission]: false });
    assert.equal(mac.addon[name](), false);
  });

  test(`${name} ignores its arguments`, (t) => {
    const mac = scene(t, { [permission]: true });
    assert.equal(mac.addon[name](false, {}, 'x', Symbol('y')), true);
    assert.deepEqual(mac.calls(), [call]);
  });
}

for (const name of ['checkAccessibility', 'requestAccessibility']) {
  test(`${name} takes any value but zero for true`, (t) => {
    const mac = scene(t, { isTrusted: 255 });
    assert.equal(mac.addon[name](), true);
    mac.change({ isTrusted: 2 });
    assert.equal(mac.addon[name](), true);
  });
}

test('requestAccessibility() is false on first use in an untrusted process, and true on later ' +
  'calls once the user has granted access', (t) => {
  const mac = scene(t, { isTrusted: false });
  assert.equal(mac.addon.requestAccessibility(), false);
  assert.equal(mac.addon.requestAccessibility(), false);
  mac.change({ isTrusted: true });
  assert.equal(mac.addon.requestAccessibility(), true);
  assert.equal(mac.addon.checkAccessibility(), true);
});

test('checkAccessibility() and checkScreenRecording() never show a prompt', (t) => {
  const mac = scene(t);
  mac.addon.checkAccessibility();
  mac.addon.checkScreenRecording();
  assert.deepEqual(mac.calls(), [['AXIsProcessTrusted'], ['CGPreflightScreenCaptureAccess']]);
});

test('capturing, clicking and typing check no permission and ask for none', async (t) => {
  const mac = scene(t);
  await mac.addon.captureDisplay([]);
  mac.addon.mouseClick('left', 1, 1);
  mac.addon.typeText('x');
  const asked = functions.flatMap(([, , [name]]) => mac.callsTo(name));
  assert.deepEqual(asked, []);
});
