'use strict';

// Servers with fewer abilities and other pixels.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startDesktop } = require('../support/desktop.js');
const { assertColour, decode } = require('../support/picture.js');

const RED = '#c02020';
const GREEN = '#20a040';
const BLUE = '#2040c0';

/** Three colours side by side on any screen of 1280 x 720. */
async function paintStripes({ painter }) {
  const stripe = { y: 0, width: 400, height: 720 };
  await painter.window('red', { ...stripe, x: 0, colour: RED });
  await painter.window('green', { ...stripe, x: 400, colour: GREEN });
  await painter.window('blue', { ...stripe, x: 800, colour: BLUE });
}

/** The stripes as captured from a server of this kind. */
async function captureStripes(t, options) {
  const desktop = await startDesktop(t, { screen: '1280x720x24', ...options });
  await paintStripes(desktop);
  const display = await desktop.addon.captureDisplay([], 0.9);
  const region = await desktop.addon.captureRegion([], 300, 100, 601, 201, 300, 100, 0.9);
  return { ...desktop, display, region };
}

describe('the picture is the same, byte for byte', () => {
  for (const [description, options] of [
    ['without shared memory', { args: ['-extension', 'MIT-SHM'] }],
    ['over the network', { transport: 'tcp' }],
  ]) {
    test(description, async (t) => {
      const usual = await captureStripes(t);
      const other = await captureStripes(t, options);
      assert.equal(other.display.base64, usual.display.base64);
      assert.equal(other.region.base64, usual.region.base64);
      const picture = await decode(other.display.base64);
      assertColour(picture, 200, 300, RED);
      assertColour(picture, 1000, 300, BLUE);
    });
  }
});

test('a screen of 16 bits a pixel has the right colours', async (t) => {
  const { display, region } = await captureStripes(t, { screen: '1280x720x16' });
  // A step of 5 bits is 8 of 255.
  const tolerance = 8 + 6;
  const picture = await decode(display.base64);
  assertColour(picture, 200, 300, RED, tolerance);
  assertColour(picture, 600, 300, GREEN, tolerance);
  assertColour(picture, 1000, 300, BLUE, tolerance);
  const part = await decode(region.base64);
  assertColour(part, 20, 50, RED, tolerance);
  assertColour(part, 150, 50, GREEN, tolerance);
  assertColour(part, 280, 50, BLUE, tolerance);
});

test('a screen of 16 bits a pixel and an odd width has straight rows', async (t) => {
  const { addon, painter } = await startDesktop(t, { screen: '641x480x16' });
  await painter.window('right', { x: 321, y: 0, width: 320, height: 480, colour: GREEN });
  const picture = await decode((await addon.captureDisplay([])).base64);
  for (const y of [10, 240, 470]) {
    assertColour(picture, 331, y, GREEN, 14);
    assertColour(picture, 310, y, '#000000');
  }
});

test('a screen with a palette is refused with a description', async (t) => {
  const { addon } = await startDesktop(t, { screen: '640x480x8' });
  const refused = (name) => ({
    outcome: 'rejected',
    name: 'Error',
    message: `${name} capture failed: the X screen of depth 8 has no true-colour visual`,
  });
  await assert.rejects(addon.captureDisplay([]), refused('Screenshot'));
  await assert.rejects(addon.captureRegion([], 0, 0, 9, 9, 9, 9), refused('Region'));
  assert.equal((await addon.listDisplays())[0].width, 640);
});
