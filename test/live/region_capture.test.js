'use strict';

// captureRegion on painted screens.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startDesktop } = require('../support/desktop.js');
const { NOWHERE, startHost } = require('../support/host.js');
const { setMonitors } = require('../support/monitors.js');
const { assertAllOf, assertColour, decode } = require('../support/picture.js');

const RED = '#c02020';
const GREEN = '#20a040';
const BLUE = '#2040c0';
const YELLOW = '#e0d020';
const BLACK = '#000000';

/** Four windows in a square of 400 x 300: red and green, below them blue and yellow. */
async function paintQuarters(painter, { x = 0, y = 0 } = {}) {
  const quarter = { width: 200, height: 150 };
  await painter.window('red', { ...quarter, x, y, colour: RED });
  await painter.window('green', { ...quarter, x: x + 200, y, colour: GREEN });
  await painter.window('blue', { ...quarter, x, y: y + 150, colour: BLUE });
  await painter.window('yellow', { ...quarter, x: x + 200, y: y + 150, colour: YELLOW });
  await painter.cursor('red', RED); // the pointer is not the subject here
  await painter.pointer(x + 20, y + 20);
}

async function quarters(t) {
  const desktop = await startDesktop(t, { screen: '400x300x24' });
  await paintQuarters(desktop.painter);
  return desktop;
}

/** The decoded picture, which has the size asked for, at the best quality. */
async function region(addon, x, y, w, h, outW = w, outH = h, displayId = 0) {
  const result = await addon.captureRegion([], x, y, w, h, outW, outH, 1, displayId);
  assert.deepEqual(Object.keys(result), ['base64', 'width', 'height']);
  assert.match(result.base64, /^[A-Za-z0-9+/]+={0,2}$/);
  assert.deepEqual([result.width, result.height], [outW, outH]);
  const picture = await decode(result.base64);
  assert.deepEqual([picture.width, picture.height], [outW, outH]);
  return picture;
}

describe('a region inside the display', () => {
  test('has the pixels of the screen one to one', async (t) => {
    const { addon, painter } = await quarters(t);
    const [x, y, width, height] = [150, 100, 100, 100];
    const picture = await region(addon, x, y, width, height);
    const screen = await painter.grab();
    for (let row = 0; row < height; ++row) {
      for (let column = 0; column < width; ++column) {
        // Next to an edge the coarser chroma of JPEG mixes the colours.
        if (Math.abs(column - 50) <= 8 || Math.abs(row - 50) <= 8) continue;
        const offset = 3 * ((y + row) * screen.width + x + column);
        const [r, g, b] = screen.rgb.subarray(offset, offset + 3);
        const [pr, pg, pb] = picture.at(column, row);
        const off = Math.max(Math.abs(r - pr), Math.abs(g - pg), Math.abs(b - pb));
        assert.ok(off <= 3, `${off} off at ${column}, ${row}`);
      }
    }
    // The edges are where they are on the screen, to the pixel: luma is not coarser.
    for (const [left, right] of [
      [picture.at(49, 80), picture.at(50, 80)],
      [picture.at(49, 20), picture.at(50, 20)],
    ]) {
      const luma = ([r, g, b]) => 0.299 * r + 0.587 * g + 0.114 * b;
      assert.ok(Math.abs(luma(left) - luma(right)) > 20, `${left} beside ${right}`);
    }
  });

  test('is the part with the corner and the size given', async (t) => {
    const { addon } = await quarters(t);
    assertAllOf(await region(addon, 0, 0, 200, 150), RED);
    assertAllOf(await region(addon, 200, 0, 200, 150), GREEN);
    assertAllOf(await region(addon, 0, 150, 200, 150), BLUE);
    assertAllOf(await region(addon, 200, 150, 200, 150), YELLOW);
    assertAllOf(await region(addon, 199, 0, 1, 1), RED);
    assertAllOf(await region(addon, 200, 150, 1, 1), YELLOW);
  });

  test('may begin and end between pixels', async (t) => {
    const { addon } = await quarters(t);
    // One pixel, of which half is red and half is green.
    const half = await region(addon, 199.5, 20, 1, 1);
    assertColour(half, 0, 0, '#706030', 8);
    assertAllOf(await region(addon, 200.4, 0.3, 99.2, 99.4, 50, 50), GREEN);
    const picture = await region(addon, 190.5, 140.5, 20, 20, 200, 200);
    assertColour(picture, 40, 40, RED);
    assertColour(picture, 160, 40, GREEN);
    assertColour(picture, 40, 160, BLUE);
    assertColour(picture, 160, 160, YELLOW);
  });

  test('is stretched to the output without regard to its proportions', async (t) => {
    const { addon } = await quarters(t);
    const picture = await region(addon, 100, 50, 200, 200, 600, 80);
    assertColour(picture, 150, 20, RED);
    assertColour(picture, 280, 20, RED);
    assertColour(picture, 320, 20, GREEN);
    assertColour(picture, 280, 60, BLUE);
    assertColour(picture, 320, 60, YELLOW);
    assertColour(picture, 590, 75, YELLOW);
  });

  test('is shrunk whole', async (t) => {
    const { addon } = await quarters(t);
    const picture = await region(addon, 0, 0, 400, 300, 80, 60);
    assertColour(picture, 20, 15, RED);
    assertColour(picture, 60, 15, GREEN);
    assertColour(picture, 20, 45, BLUE);
    assertColour(picture, 60, 45, YELLOW);
    assertColour(await region(addon, 0, 0, 400, 300, 1, 1), 0, 0, '#787450', 8);
  });

  test('is magnified', async (t) => {
    const { addon } = await quarters(t);
    const picture = await region(addon, 198, 148, 4, 4, 400, 400);
    assertColour(picture, 60, 60, RED);
    assertColour(picture, 340, 60, GREEN);
    assertColour(picture, 60, 340, BLUE);
    assertColour(picture, 340, 340, YELLOW);
  });
});

describe('a region that leaves the display', () => {
  test('is black outside and has the screen inside', async (t) => {
    const { addon } = await quarters(t);
    const topLeft = await region(addon, -50, -50, 100, 100);
    assertColour(topLeft, 75, 75, RED);
    for (const [x, y] of [
      [25, 25],
      [75, 25],
      [25, 75],
    ]) {
      assertColour(topLeft, x, y, BLACK);
    }
    const bottomRight = await region(addon, 350, 250, 100, 100);
    assertColour(bottomRight, 25, 25, YELLOW);
    assertColour(bottomRight, 75, 75, BLACK);
    assertColour(bottomRight, 25, 75, BLACK);
    assertColour(bottomRight, 75, 25, BLACK);
  });

  test('on all sides has the whole display in its middle', async (t) => {
    const { addon } = await quarters(t);
    const picture = await region(addon, -400, -300, 1200, 900, 600, 450);
    assertColour(picture, 250, 187, RED);
    assertColour(picture, 350, 187, GREEN);
    assertColour(picture, 250, 262, BLUE);
    assertColour(picture, 350, 262, YELLOW);
    for (const [x, y] of [
      [100, 225],
      [500, 225],
      [300, 75],
      [300, 375],
    ]) {
      assertColour(picture, x, y, BLACK);
    }
  });

  for (const [description, x, y, w, h] of [
    ['left', -500, 0, 100, 100],
    ['right', 400, 0, 100, 100],
    ['above', 0, -100, 100, 100],
    ['below', 0, 300, 100, 100],
    ['far away', 1e12, -1e12, 100, 100],
    ['at the end of all numbers', 1.7e308, 1.7e308, 1.7e308, 1.7e308],
  ]) {
    test(`is all black when it lies ${description}`, async (t) => {
      const { addon } = await quarters(t);
      assertAllOf(await region(addon, x, y, w, h, 60, 40), BLACK);
    });
  }

  test('does not show the neighbouring displays', async (t) => {
    const { addon, env, painter } = await startDesktop(t, { screen: '1200x900x24' });
    await painter.window('all', { x: 0, y: 0, width: 1200, height: 900, colour: '#ffffff' });
    await setMonitors(env, {
      middle: { x: 400, y: 300, width: 400, height: 300 },
      left: { x: 0, y: 300, width: 400, height: 300 },
      below: { x: 400, y: 600, width: 400, height: 300 },
    });
    await paintQuarters(painter, { x: 400, y: 300 });
    const corner = await region(addon, -50, 250, 100, 100);
    assertColour(corner, 75, 25, BLUE);
    assertColour(corner, 25, 25, BLACK);
    assertColour(corner, 75, 75, BLACK);
    assertColour(corner, 25, 75, BLACK);
    assertAllOf(await region(addon, -400, 0, 400, 300, 40, 30), BLACK);
    assertAllOf(await region(addon, 0, 300, 400, 300, 40, 30), BLACK);
  });
});

describe('the display of captureRegion', () => {
  /** The quarters on the right of a display that is white and primary. */
  async function twoDisplays(t) {
    const desktop = await startDesktop(t, { screen: '800x300x24' });
    await setMonitors(desktop.env, {
      white: { x: 0, y: 0, width: 400, height: 300 },
      coloured: { x: 400, y: 0, width: 400, height: 300 },
    });
    const all = { x: 0, y: 0, width: 800, height: 300 };
    await desktop.painter.window('white', { ...all, colour: '#ffffff' });
    await paintQuarters(desktop.painter, { x: 400, y: 0 });
    const [white, coloured] = await desktop.addon.listDisplays();
    return { ...desktop, white, coloured };
  }

  test('is where the region is counted from', async (t) => {
    const { addon, coloured } = await twoDisplays(t);
    assertAllOf(await region(addon, 200, 150, 200, 150, 50, 50, coloured.id), YELLOW);
    assertAllOf(await region(addon, 0, 0, 200, 150, 50, 50, coloured.id), RED);
  });

  for (const [description, displayId] of [
    ['none is given', 0],
    ['an unknown one is given', 12345],
    ['no number is given', '5'],
  ]) {
    test(`is the first when ${description}`, async (t) => {
      const { addon } = await twoDisplays(t);
      assertAllOf(await region(addon, 0, 0, 400, 300, 40, 30, displayId), '#ffffff');
    });
  }
});

describe('the output size', () => {
  for (const [outW, outH] of [
    [1, 1],
    [1, 500],
    [500, 1],
    [17, 33],
    [65500, 2],
    [2, 65500],
  ]) {
    test(`${outW} x ${outH} is the size of the picture`, async (t) => {
      const { addon } = await quarters(t);
      const picture = await region(addon, 10, 10, 100, 100, outW, outH);
      assertColour(picture, outW - 1, outH - 1, RED);
    });
  }

  test('is truncated to integers', async (t) => {
    const { addon } = await quarters(t);
    const result = await addon.captureRegion([], 10, 10, 100, 100, 50.9, 40.1);
    assert.deepEqual([result.width, result.height], [50, 40]);
  });

  for (const [outW, outH] of [
    [0, 0],
    [0, 100],
    [100, 0],
    [-1, 100],
    [100, -2147483648],
    [65501, 10],
    [10, 65501],
    [60000, 60000],
    [2147483647, 2147483647],
    [NaN, 100],
    [100, Infinity],
    [4294967296, 10],
  ]) {
    test(`${outW} x ${outH} is refused at once, for next to no memory`, async (t) => {
      const { addon, host } = await quarters(t);
      await addon.captureRegion([], 0, 0, 400, 300, 400, 300);
      const before = host.usage().residentBytes;
      const start = performance.now();
      await assert.rejects(addon.captureRegion([], 10, 10, 100, 100, outW, outH), {
        outcome: 'rejected',
        name: 'Error',
        message: 'Failed to encode region screenshot to JPEG',
      });
      assert.ok(performance.now() - start < 2000, 'at once');
      assert.ok(host.usage().peakBytes - before < 100e6, 'for next to no memory');
    });
  }
});

describe('an impossible region', () => {
  for (const [x, y, w, h] of [
    [NaN, 0, 10, 10],
    [0, NaN, 10, 10],
    [0, 0, NaN, 10],
    [0, 0, 10, NaN],
    [Infinity, 0, 10, 10],
    [0, -Infinity, 10, 10],
    [0, 0, Infinity, 10],
    [0, 0, 10, Infinity],
    [0, 0, 0, 10],
    [0, 0, 10, 0],
    [0, 0, -10, 10],
    [0, 0, 10, -10],
  ]) {
    test(`of ${w} x ${h} at ${x}, ${y} rejects and says why`, async (t) => {
      const { addon } = await quarters(t);
      await assert.rejects(addon.captureRegion([], x, y, w, h, 100, 100), {
        outcome: 'rejected',
        name: 'Error',
        message: /^Region capture failed: ./,
      });
      assertAllOf(await region(addon, 0, 0, 50, 50), RED);
    });
  }
});

describe('bad arguments of captureRegion', () => {
  const good = [[], 0, 0, 10, 10, 10, 10];
  const bad = { 'no arguments': [], 'six arguments': good.slice(0, 6) };
  ['excludeBundleIds', 'x', 'y', 'w', 'h', 'outW', 'outH'].forEach((name, index) => {
    for (const value of [undefined, '1', null]) {
      const args = [...good];
      args[index] = value;
      bad[`${value === '1' ? 'a string' : value} as ${name}`] = args;
    }
  });

  for (const [description, args] of Object.entries(bad)) {
    test(`${description}: a plain Error with the usage is thrown`, async (t) => {
      const { addon } = startHost(t, NOWHERE);
      await assert.rejects(addon.captureRegion(...args), {
        outcome: 'thrown',
        name: 'Error',
        message:
          'captureRegion(excludeBundleIds: string[], x, y, w, h, outW, outH, quality?, displayId?)',
      });
    });
  }

  test('a quality and an identifier that are no numbers are not used', async (t) => {
    const { addon } = await quarters(t);
    const { base64 } = await addon.captureRegion(...good);
    assert.equal((await addon.captureRegion(...good, 'x', 'y')).base64, base64);
    assert.equal((await addon.captureRegion(...good, 0.75, 0, 'more')).base64, base64);
  });
});
