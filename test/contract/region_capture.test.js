'use strict';
// captureRegion: a rectangle of one display, stretched to the size that the caller chose.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene, builtIn, jpegText } = require('./harness');

const second = { id: 2, frame: [1512, 0, 1440, 900], scale: 1, name: 'Second' };
const filterCall = '-[SCContentFilter initWithDisplay:excludingApplications:exceptingWindows:]';
const bitmapCall = '-[NSBitmapImageRep initWithBitmapDataPlanes:pixelsWide:pixelsHigh:' +
  'bitsPerSample:samplesPerPixel:hasAlpha:isPlanar:colorSpaceName:bytesPerRow:bitsPerPixel:]';
const drawCall = '-[NSImage drawInRect:fromRect:operation:fraction:]';

async function rejectsWith(promise, message) {
  await assert.rejects(promise, (error) => {
    assert.equal(Object.getPrototypeOf(error), Error.prototype);
    assert.equal(error.message, message);
    return true;
  });
}

function configured(mac, property) {
  return mac.callsTo(`-[SCStreamConfiguration set${property}:]`)[0][1];
}

test('the result has base64, width and height, in this order, and nothing else', async (t) => {
  const mac = scene(t);
  const result = await mac.addon.captureRegion([], 10, 20, 300, 200, 150, 100);
  assert.deepEqual(result, { base64: jpegText(), width: 150, height: 100 });
  assert.deepEqual(Object.keys(result), ['base64', 'width', 'height']);
});

test('the region is handed on in the display\'s own points, unchanged', async (t) => {
  const mac = scene(t, { screens: [builtIn, second] });
  await mac.addon.captureRegion([], 10.25, -20.5, 300.75, 1e-3, 10, 10, 0.5, 2);
  assert.deepEqual(configured(mac, 'SourceRect'), [10.25, -20.5, 300.75, 1e-3]);
  assert.equal(mac.callsTo(filterCall)[0][1], 'display 2');
});

test('the region is not checked against the display nor for sign or size', async (t) => {
  const mac = scene(t);
  const regions = [
    [-5000, 9000, 10, 10], [0, 0, 0, 0], [10, 10, -5, -5], [NaN, Infinity, -Infinity, 1e300],
  ];
  for (const region of regions) await mac.addon.captureRegion([], ...region, 10, 10);
  assert.deepEqual(
    mac.callsTo('-[SCStreamConfiguration setSourceRect:]').map(([, rect]) => rect), regions);
});

test('an output of 0 x 0 ends in the encoding failure', async (t) => {
  const mac = scene(t);
  await rejectsWith(mac.addon.captureRegion([], 0, 0, 10, 10, 0, 0),
    'Failed to encode region screenshot to JPEG');
});

test('a negative output size is asked for as it is and ends in the encoding failure', async (t) => {
  const mac = scene(t);
  await rejectsWith(mac.addon.captureRegion([], 0, 0, 10, 10, -5, 10),
    'Failed to encode region screenshot to JPEG');
  assert.deepEqual(mac.callsTo(bitmapCall)[0].slice(2, 4), [-5, 10]);
});

test('the output size is truncated and wraps around at 2^32', async (t) => {
  const mac = scene(t);
  const result = await mac.addon.captureRegion([], 0, 0, 10, 10, 64.9, 2 ** 32 + 32);
  assert.deepEqual([result.width, result.height], [64, 32]);
  assert.deepEqual([configured(mac, 'Width'), configured(mac, 'Height')], [64, 32]);
});

test('the output size need not keep the region\'s aspect ratio', async (t) => {
  const mac = scene(t);
  const result = await mac.addon.captureRegion([], 0, 0, 100, 100, 400, 30);
  assert.deepEqual([result.width, result.height], [400, 30]);
  assert.deepEqual(mac.callsTo(drawCall)[0][3], [0, 0, 400, 30]);
});

test('width and height echo the output size even if the system delivered another', async (t) => {
  const mac = scene(t, { image: { size: [77, 55] } });
  const result = await mac.addon.captureRegion([], 0, 0, 100, 100, 400, 300);
  assert.deepEqual([result.width, result.height], [400, 300]);
  assert.deepEqual(mac.callsTo('-[NSImage initWithCGImage:size:]')[0].slice(1),
    ['image 77 x 55', [400, 300]]);
  assert.deepEqual(mac.callsTo(bitmapCall)[0].slice(2, 4), [400, 300]);
});

test('the size budget does not apply', async (t) => {
  const mac = scene(t);
  const result = await mac.addon.captureRegion([], 0, 0, 100, 100, 5000, 4000);
  assert.deepEqual([result.width, result.height], [5000, 4000]);
});

test('the display is chosen as for a display capture', async (t) => {
  const mac = scene(t, { screens: [builtIn, second], mainDisplayId: 2 });
  const region = [0, 0, 10, 10, 10, 10, 0.5];
  await mac.addon.captureRegion([], ...region);
  await mac.addon.captureRegion([], ...region, 1);
  await mac.addon.captureRegion([], ...region, 77);
  assert.deepEqual(mac.callsTo(filterCall).map((call) => call[1]),
    ['display 2', 'display 1', 'display 1']);
});

test('no screen is looked at', async (t) => {
  const mac = scene(t);
  await mac.addon.captureRegion([], 0, 0, 10, 10, 10, 10);
  assert.deepEqual(mac.calls().filter(([name]) => name.includes('NSScreen')), []);
});

test('applications are excluded as in a display capture', async (t) => {
  const applications = [{ bundleId: 'com.b' }, { bundleId: 'com.a' }];
  const mac = scene(t, { content: { applications } });
  await mac.addon.captureRegion(['com.a', 'com.none'], 0, 0, 10, 10, 10, 10);
  assert.deepEqual(mac.callsTo(filterCall)[0].slice(2), [['application com.a'], []]);
});

const failures = [
  ['no content but an error', { content: { result: 'error', error: 'Not permitted.' } },
    'Failed to get shareable content: Not permitted.'],
  ['content together with an error', { content: { result: 'both', error: 'Half of it.' } },
    'Failed to get shareable content: Half of it.'],
  ['neither content nor an error', { content: { result: 'neither' } },
    'Failed to get shareable content'],
  ['content without displays', { content: { displays: [] } }, 'No display found'],
  ['no image but an error', { image: { result: 'error', error: 'Screen locked.' } },
    'Region capture failed: Screen locked.'],
  ['an image together with an error', { image: { result: 'both', error: 'Torn.' } },
    'Region capture failed: Torn.'],
  ['neither an image nor an error', { image: { result: 'neither' } }, 'Region capture failed'],
  ['no encoded data', { jpeg: null }, 'Failed to encode region screenshot to JPEG'],
];
for (const [cause, script, message] of failures) {
  test(`${cause} rejects with "${message}"`, async (t) => {
    const mac = scene(t, script);
    await rejectsWith(mac.addon.captureRegion([], 0, 0, 10, 10, 10, 10), message);
  });
}
