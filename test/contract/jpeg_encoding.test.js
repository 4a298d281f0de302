'use strict';
// A captured picture as base64 JPEG text: what is drawn, how it is encoded, what counts as one.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene, jpegText } = require('./harness');

const region = [0, 0, 10, 10, 320, 200];
const bitmapCall = '-[NSBitmapImageRep initWithBitmapDataPlanes:pixelsWide:pixelsHigh:' +
  'bitsPerSample:samplesPerPixel:hasAlpha:isPlanar:colorSpaceName:bytesPerRow:bitsPerPixel:]';
const contextCall = '+[NSGraphicsContext graphicsContextWithBitmapImageRep:]';
const encodeCall = '-[NSBitmapImageRep representationUsingType:properties:]';
const base64Call = '-[NSData base64EncodedStringWithOptions:]';

const failure = { message: 'Failed to encode region screenshot to JPEG' };

test('a JPEG of 64 bytes is accepted', async (t) => {
  const mac = scene(t, { jpeg: { bytes: 64 } });
  const { base64 } = await mac.addon.captureRegion([], ...region);
  assert.equal(base64, jpegText(64));
  assert.equal(Buffer.from(base64, 'base64').length, 64);
});

for (const bytes of [63, 1, 0]) {
  test(`a JPEG of ${bytes} bytes is treated as failure`, async (t) => {
    const mac = scene(t, { jpeg: { bytes } });
    await assert.rejects(mac.addon.captureRegion([], ...region), failure);
    assert.deepEqual(mac.callsTo(base64Call), []);
  });
}

for (const bytes of [64, 65, 66, 67, 4096, 100_000]) {
  test(`${bytes} bytes become padded base64 without line breaks`, async (t) => {
    const mac = scene(t, { jpeg: { bytes } });
    const { base64 } = await mac.addon.captureRegion([], ...region);
    assert.equal(base64, jpegText(bytes));
    assert.match(base64, /^[A-Za-z0-9+/]+={0,2}$/);
    assert.equal(base64.length % 4, 0);
  });
}

test('the output has the target size whatever the captured image\'s', async (t) => {
  const mac = scene(t, { image: { size: [5, 7000] } });
  await mac.addon.captureRegion([], ...region);
  assert.deepEqual(mac.callsTo(bitmapCall)[0].slice(2, 4), [320, 200]);
  assert.deepEqual(mac.callsTo('-[NSImage initWithCGImage:size:]')[0],
    ['-[NSImage initWithCGImage:size:]', 'image 5 x 7000', [320, 200]]);
  assert.deepEqual(mac.callsTo('-[NSImage drawInRect:fromRect:operation:fraction:]')[0].slice(3),
    [[0, 0, 320, 200], [0, 0, 0, 0], 1, 1]);
});

test('the bitmap is 8-bit RGBA with alpha, not planar, in the device colour space', async (t) => {
  const mac = scene(t);
  await mac.addon.captureRegion([], ...region);
  assert.deepEqual(mac.callsTo(bitmapCall)[0].slice(1),
    ['NULL', 320, 200, 8, 4, true, false, 'NSDeviceRGBColorSpace', 0, 0]);
});

test('the encoder gets file type JPEG and the compression factor alone', async (t) => {
  const mac = scene(t);
  await mac.addon.captureRegion([], ...region, 0.25);
  assert.deepEqual(mac.callsTo(encodeCall)[0].slice(1),
    ['bitmap', 3, { NSImageCompressionFactor: 0.25, entries: 1 }]);
});

test('without a bitmap nothing is drawn', async (t) => {
  const mac = scene(t, { failing: [bitmapCall] });
  await assert.rejects(mac.addon.captureRegion([], ...region), failure);
  assert.deepEqual(mac.callsTo(contextCall), []);
});

test('without a graphics context nothing is drawn and no state is saved', async (t) => {
  const mac = scene(t, { failing: [contextCall] });
  await assert.rejects(mac.addon.captureRegion([], ...region), failure);
  assert.deepEqual(mac.callsTo('+[NSGraphicsContext saveGraphicsState]'), []);
  assert.deepEqual(mac.callsTo('-[NSImage initWithCGImage:size:]'), []);
});

test('without encoded data there is no base64', async (t) => {
  const mac = scene(t, { failing: [encodeCall] });
  await assert.rejects(mac.addon.captureRegion([], ...region), failure);
  assert.deepEqual(mac.callsTo(base64Call), []);
});

test('without base64 text the encoding has failed', async (t) => {
  const mac = scene(t, { failing: [base64Call] });
  await assert.rejects(mac.addon.captureRegion([], ...region), failure);
});

test('the graphics state is restored also when encoding fails', async (t) => {
  const mac = scene(t, { jpeg: null });
  await assert.rejects(mac.addon.captureRegion([], ...region), failure);
  assert.equal(mac.callsTo('+[NSGraphicsContext restoreGraphicsState]').length, 1);
});

test('display capture encodes the same way at its own size', async (t) => {
  const mac = scene(t, { screens: [{ id: 1, frame: [0, 0, 1440, 900], scale: 2, name: 'x' }] });
  await mac.addon.captureDisplay([], 0.25);
  assert.deepEqual(mac.callsTo(bitmapCall)[0].slice(1),
    ['NULL', 1390, 868, 8, 4, true, false, 'NSDeviceRGBColorSpace', 0, 0]);
  assert.equal(mac.callsTo(encodeCall)[0][3].NSImageCompressionFactor, 0.25);
});
