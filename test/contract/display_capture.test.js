'use strict';
// captureDisplay: one whole display, within the size budget, with the geometry to map it back.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene, builtIn, jpegText } = require('./harness');

const retina = { id: 1, frame: [0, 0, 1440, 900], scale: 2, name: 'Retina' };
const left = { id: 2, frame: [-1920, -180, 1920, 1080], scale: 1, name: 'Left' };
const above = { id: 3, frame: [0, 900, 1920, 1080], scale: 1, name: 'Above' };

const filterCall = '-[SCContentFilter initWithDisplay:excludingApplications:exceptingWindows:]';

function excluded(mac) {
  return mac.callsTo(filterCall)[0][2];
}

async function rejectsWith(promise, message) {
  await assert.rejects(promise, (error) => {
    assert.equal(Object.getPrototypeOf(error), Error.prototype);
    assert.equal(error.message, message);
    return true;
  });
}

test('a 2.0-scale display of 1440 x 900 points gives an image of 1390 x 868', async (t) => {
  const mac = scene(t, { screens: [retina] });
  assert.deepEqual(await mac.addon.captureDisplay([]), {
    base64: jpegText(), width: 1390, height: 868, displayWidth: 1440, displayHeight: 900,
    displayId: 1, originX: 0, originY: 0,
  });
});

test('the result has its keys in the documented order', async (t) => {
  const mac = scene(t);
  assert.deepEqual(Object.keys(await mac.addon.captureDisplay([])), ['base64', 'width', 'height',
    'displayWidth', 'displayHeight', 'displayId', 'originX', 'originY']);
});

test('displayId 0 or absent captures the main display', async (t) => {
  const mac = scene(t, { screens: [retina, left], mainDisplayId: 2 });
  assert.equal((await mac.addon.captureDisplay([], 0.5, 0)).displayId, 2);
  assert.equal((await mac.addon.captureDisplay([])).displayId, 2);
});

test('a known displayId captures that display', async (t) => {
  const mac = scene(t, { screens: [retina, left] });
  assert.equal((await mac.addon.captureDisplay([], 0.5, 2)).displayId, 2);
});

test('an unknown displayId captures the first display reported and returns its identifier',
  async (t) => {
    const mac = scene(t, { screens: [retina, left], content: {
      displays: [{ id: 2, width: 1920, height: 1080 }, { id: 1, width: 1440, height: 900 }],
    } });
    const result = await mac.addon.captureDisplay([], 0.5, 77);
    assert.deepEqual([result.displayId, result.displayWidth], [2, 1920]);
  });

test('a main display that is not among the displays gives the first one', async (t) => {
  const mac = scene(t, { screens: [retina, left], mainDisplayId: 9 });
  assert.equal((await mac.addon.captureDisplay([])).displayId, 1);
});

test('a display whose screen cannot be found counts as scale 2.0 at the origin', async (t) => {
  const mac = scene(t, {
    screens: [retina], content: { displays: [{ id: 8, width: 400, height: 300 }] },
  });
  const { base64, ...geometry } = await mac.addon.captureDisplay([], 0.5, 8);
  assert.deepEqual(geometry, {
    width: 800, height: 600, displayWidth: 400, displayHeight: 300, displayId: 8,
    originX: 0, originY: 0,
  });
});

test('a screen without an identifier is not taken for the display\'s', async (t) => {
  const { id, ...nameless } = left;
  const mac = scene(t, { screens: [nameless],
    content: { displays: [{ id: 2, width: 100, height: 50 }] } });
  const result = await mac.addon.captureDisplay([], 0.5, 2);
  assert.deepEqual([result.width, result.displayWidth, result.originX], [200, 100, 0]);
});

test('a display to the left and lower has a negative originX', async (t) => {
  const mac = scene(t, { screens: [retina, left] });
  const result = await mac.addon.captureDisplay([], 0.5, 2);
  assert.deepEqual([result.originX, result.originY], [-1920, 0]);
});

test('a display above the primary one has a negative originY', async (t) => {
  const mac = scene(t, { screens: [retina, above] });
  const result = await mac.addon.captureDisplay([], 0.5, 3);
  assert.deepEqual([result.originX, result.originY], [0, -1080]);
});

test('points are truncated toward zero', async (t) => {
  const odd = { id: 2, frame: [-10.9, 900.9, 100.9, 50.9], scale: 1, name: 'Odd' };
  const mac = scene(t, { screens: [retina, odd] });
  const { base64, ...geometry } = await mac.addon.captureDisplay([], 0.5, 2);
  assert.deepEqual(geometry, {
    width: 100, height: 50, displayWidth: 100, displayHeight: 50, displayId: 2,
    originX: -10, originY: -51,
  });
});

test('the physical size is the scale times the truncated points, truncated', async (t) => {
  const mac = scene(t, { screens: [{ ...builtIn, frame: [0, 0, 101.9, 50], scale: 1.5 }] });
  const result = await mac.addon.captureDisplay([]);
  assert.deepEqual([result.width, result.height], [151, 75]);
});

test('a display without an area ends in the encoding failure', async (t) => {
  const mac = scene(t, { screens: [{ ...builtIn, frame: [0, 0, 0.5, 100] }] });
  await rejectsWith(mac.addon.captureDisplay([]), 'Failed to encode screenshot to JPEG');
  assert.deepEqual(mac.callsTo('-[SCStreamConfiguration setWidth:]'),
    [['-[SCStreamConfiguration setWidth:]', 0]]);
});

test('absurd frames end in a documented outcome', async (t) => {
  const mac = scene(t, {
    screens: [{ ...builtIn, frame: [1e300, -1e300, NaN, Infinity] }],
    content: { displays: [{ id: 1, width: 1512, height: 982 }] },
  });
  await rejectsWith(mac.addon.captureDisplay([]), 'Failed to encode screenshot to JPEG');
});

test('applications are excluded by exact identifier, in the order of the system', async (t) => {
  const mac = scene(t, { content: { applications: [
    { bundleId: 'com.b' }, { bundleId: 'com.A' }, {}, { bundleId: 'com.a' },
    { bundleId: 'com.a.x' }, { bundleId: 'com.a' }, { bundleId: '' },
  ] } });
  await mac.addon.captureDisplay(['com.a', 'com.b', 'com.a']);
  assert.deepEqual(excluded(mac), ['application com.b', 'application com.a', 'application com.a']);
});

test('an identifier that matches no application has no effect', async (t) => {
  const mac = scene(t, { content: { applications: [{ bundleId: 'com.a' }] } });
  await mac.addon.captureDisplay(['com.none']);
  assert.deepEqual(excluded(mac), []);
});

test('an application without an identifier is never excluded, not even by an empty string',
  async (t) => {
    const mac = scene(t, { content: { applications: [{}, { bundleId: 'com.a' }] } });
    await mac.addon.captureDisplay(['']);
    assert.deepEqual(excluded(mac), []);
  });

test('identifiers beyond ASCII are matched', async (t) => {
  const mac = scene(t, { content: { applications: [{ bundleId: 'com.é.测试' }] } });
  await mac.addon.captureDisplay(['com.é.测试']);
  assert.deepEqual(excluded(mac), ['application com.é.测试']);
});

test('the whole display is captured: no source rectangle is set', async (t) => {
  const mac = scene(t);
  await mac.addon.captureDisplay([]);
  assert.deepEqual(mac.callsTo('-[SCStreamConfiguration setSourceRect:]'), []);
});

const failures = [
  ['no content but an error', { content: { result: 'error', error: 'Not permitted.' } },
    'Failed to get shareable content: Not permitted.'],
  ['content together with an error', { content: { result: 'both', error: 'Half of it.' } },
    'Failed to get shareable content: Half of it.'],
  ['neither content nor an error', { content: { result: 'neither' } },
    'Failed to get shareable content'],
  ['an error that has no text', { content: { result: 'error', error: '' } },
    'Failed to get shareable content: '],
  ['an error beyond ASCII', { content: { result: 'error', error: 'Verboten – 禁止' } },
    'Failed to get shareable content: Verboten – 禁止'],
  ['content without displays', { content: { displays: [] } }, 'No display found'],
  ['no image but an error', { image: { result: 'error', error: 'Screen locked.' } },
    'Screenshot capture failed: Screen locked.'],
  ['an image together with an error', { image: { result: 'both', error: 'Torn.' } },
    'Screenshot capture failed: Torn.'],
  ['neither an image nor an error', { image: { result: 'neither' } }, 'Screenshot capture failed'],
  ['no encoded data', { jpeg: null }, 'Failed to encode screenshot to JPEG'],
];
for (const [cause, script, message] of failures) {
  test(`${cause} rejects with "${message}"`, async (t) => {
    const mac = scene(t, script);
    await rejectsWith(mac.addon.captureDisplay([]), message);
  });
}

test('a failure before the capture asks for no picture', async (t) => {
  const mac = scene(t, { content: { result: 'both' } });
  await assert.rejects(mac.addon.captureDisplay([]));
  assert.deepEqual(mac.callsTo('-[SCStreamConfiguration init]'), []);
});
