'use strict';

// captureDisplay on painted screens.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startDesktop } = require('../support/desktop.js');
const { NOWHERE, startHost } = require('../support/host.js');
const { setMonitors } = require('../support/monitors.js');
const { assertColour, decode } = require('../support/picture.js');

const RESULT_KEYS = [
  'base64',
  'width',
  'height',
  'displayWidth',
  'displayHeight',
  'displayId',
  'originX',
  'originY',
];

const RED = '#c02020';
const GREEN = '#20a040';
const BLUE = '#2040c0';
const YELLOW = '#e0d020';
const GREY = '#808080';

describe('the result of captureDisplay', () => {
  test('has the documented keys in order, the sizes and the place of the display', async (t) => {
    const { addon } = await startDesktop(t, { screen: '1920x1080x24' });
    const result = await addon.captureDisplay([]);
    assert.deepEqual(Object.keys(result), RESULT_KEYS);
    const { base64, ...geometry } = result;
    const [{ id }] = await addon.listDisplays();
    assert.deepEqual(geometry, {
      width: 1456,
      height: 819,
      displayWidth: 1920,
      displayHeight: 1080,
      displayId: id,
      originX: 0,
      originY: 0,
    });
    assert.match(base64, /^[A-Za-z0-9+/]+={0,2}$/, 'base64 without line breaks');
    const picture = await decode(base64);
    assert.deepEqual([picture.width, picture.height], [1456, 819]);
  });

  for (const [width, height] of [
    [640, 480],
    [1280, 800],
    [1120, 1120],
    [3840, 2160],
    [300, 2000],
  ]) {
    test(`has the target size of a display of ${width} x ${height}`, async (t) => {
      const { addon } = await startDesktop(t, { screen: `${width}x${height}x24` });
      const target = await addon.calculateTargetSize(width, height);
      const result = await addon.captureDisplay([]);
      assert.deepEqual({ width: result.width, height: result.height }, target);
      const picture = await decode(result.base64);
      assert.deepEqual({ width: picture.width, height: picture.height }, target);
    });
  }
});

describe('the picture of captureDisplay', () => {
  /** Four windows near the corners of a screen of 1920 x 1080, on grey. */
  const corners = {
    topLeft: { x: 20, y: 20, colour: RED },
    topRight: { x: 1600, y: 20, colour: GREEN },
    bottomLeft: { x: 20, y: 760, colour: BLUE },
    bottomRight: { x: 1600, y: 760, colour: YELLOW },
  };

  test('has every colour where it was painted, scaled', async (t) => {
    const { addon, painter } = await startDesktop(t, { screen: '1920x1080x24' });
    await painter.background(GREY);
    for (const [name, corner] of Object.entries(corners)) {
      await painter.window(name, { ...corner, width: 300, height: 300 });
    }
    const result = await addon.captureDisplay([]);
    const picture = await decode(result.base64);
    // The way back that the geometry is for: image pixels of global points.
    const toX = (x) => ((x - result.originX) * result.width) / result.displayWidth;
    const toY = (y) => ((y - result.originY) * result.height) / result.displayHeight;
    for (const { x, y, colour } of Object.values(corners)) {
      for (const [dx, dy] of [
        [5, 5],
        [295, 5],
        [150, 150],
        [5, 295],
        [295, 295],
      ]) {
        assertColour(picture, toX(x + dx), toY(y + dy), colour, 16);
      }
      assertColour(picture, toX(x + 150), toY(y + 150), colour);
      assertColour(picture, toX(x - 12), toY(y + 150), GREY, 16);
      assertColour(picture, toX(x + 312), toY(y + 150), GREY, 16);
    }
    // Not in the very middle, where the pointer is.
    assertColour(picture, toX(960), toY(300), GREY);
  });

  test('follows what changes on the screen', async (t) => {
    const { addon, painter } = await startDesktop(t, { screen: '640x480x24' });
    const place = { x: 100, y: 100, width: 200, height: 200 };
    const picture = async () => decode((await addon.captureDisplay([])).base64);
    await painter.window('under', { ...place, colour: RED });
    assertColour(await picture(), 200, 200, RED);
    await painter.window('over', { ...place, colour: GREEN });
    assertColour(await picture(), 200, 200, GREEN);
    await painter.raise('under');
    assertColour(await picture(), 200, 200, RED);
    await painter.move('under', 400, 200);
    const moved = await picture();
    assertColour(moved, 200, 200, GREEN);
    assertColour(moved, 500, 300, RED);
  });

  test('has windows as a window manager places them', async (t) => {
    const { addon, painter } = await startDesktop(t, { screen: '800x600x24', manager: true });
    await painter.window('client', { x: 300, y: 200, width: 200, height: 200, colour: RED });
    const picture = await decode((await addon.captureDisplay([])).base64);
    for (const [x, y] of [
      [306, 206],
      [493, 206],
      [306, 393],
      [493, 393],
    ]) {
      assertColour(picture, x, y, RED, 16);
    }
  });
});

describe('the display of captureDisplay', () => {
  /** A small primary display at the bottom right, a red one on its left, a green one above. */
  async function threeDisplays(t) {
    const desktop = await startDesktop(t, { screen: '1200x900x24' });
    await setMonitors(desktop.env, {
      primary: { x: 500, y: 400, width: 600, height: 500 },
      left: { x: 0, y: 450, width: 500, height: 400 },
      above: { x: 500, y: 0, width: 700, height: 400 },
    });
    const { painter, addon } = desktop;
    await painter.window('p', { x: 500, y: 400, width: 600, height: 500, colour: BLUE });
    await painter.window('l', { x: 0, y: 450, width: 500, height: 400, colour: RED });
    await painter.window('a', { x: 500, y: 0, width: 700, height: 400, colour: GREEN });
    const ids = {};
    for (const { name, id } of await addon.listDisplays()) ids[name] = id;
    return { ...desktop, ids };
  }

  /** The result shows `colour` alone. */
  async function assertShows(result, colour) {
    const picture = await decode(result.base64);
    const right = picture.width - 8;
    const bottom = picture.height - 8;
    for (const [x, y] of [
      [8, 8],
      [right, 8],
      [8, bottom],
      [right, bottom],
      [right / 2, bottom / 2],
    ]) {
      assertColour(picture, x, y, colour);
    }
  }

  test('is the one with the identifier given, with its place', async (t) => {
    const { addon, ids } = await threeDisplays(t);
    const expected = {
      left: { colour: RED, geometry: [500, 400, -500, 50] },
      above: { colour: GREEN, geometry: [700, 400, 0, -400] },
      primary: { colour: BLUE, geometry: [600, 500, 0, 0] },
    };
    for (const [name, { colour, geometry }] of Object.entries(expected)) {
      const result = await addon.captureDisplay([], 0.75, ids[name]);
      assert.equal(result.displayId, ids[name]);
      assert.deepEqual(
        [result.displayWidth, result.displayHeight, result.originX, result.originY],
        geometry,
      );
      await assertShows(result, colour);
    }
  });

  for (const [description, args] of [
    ['nothing', []],
    ['0', [0.75, 0]],
    ['no number', [0.75, 'left']],
    ['NaN', [0.75, NaN]],
  ]) {
    test(`is the main display when ${description} is given`, async (t) => {
      const { addon, ids } = await threeDisplays(t);
      const result = await addon.captureDisplay([], ...args);
      assert.equal(result.displayId, ids.primary);
      await assertShows(result, BLUE);
    });
  }

  test('is the first of all when no display has the identifier', async (t) => {
    const { addon } = await threeDisplays(t);
    const [first] = await addon.listDisplays();
    for (const unknown of [-1, 12345]) {
      const result = await addon.captureDisplay([], 0.75, unknown);
      assert.equal(result.displayId, first.id);
      await assertShows(result, BLUE);
    }
  });
});

describe('the pointer', () => {
  const MAGENTA = '#e000e0';
  // From the hot spot of the painter's pointer to the middle of its square.
  const TO_MIDDLE = 4;

  async function pointerDesktop(t, options) {
    const desktop = await startDesktop(t, { screen: '800x600x24', ...options });
    await desktop.painter.window('all', { x: 0, y: 0, width: 800, height: 600, colour: GREY });
    await desktop.painter.cursor('all', MAGENTA);
    return desktop;
  }

  test('is in the picture, with its hot spot where it points', async (t) => {
    const { addon, painter } = await pointerDesktop(t);
    await painter.pointer(400, 300);
    const picture = await decode((await addon.captureDisplay([], 1)).base64);
    // The square reaches from 4 pixels before the hot spot to 11 behind it.
    for (const offset of [-2, 4, 9]) {
      assertColour(picture, 400 + offset, 304, MAGENTA, 24);
      assertColour(picture, 404, 300 + offset, MAGENTA, 24);
    }
    for (const offset of [-7, 14]) {
      assertColour(picture, 400 + offset, 304, GREY, 24);
      assertColour(picture, 404, 300 + offset, GREY, 24);
    }
  });

  test('leaves no trace where it was before', async (t) => {
    const { addon, painter } = await pointerDesktop(t);
    await painter.pointer(100, 100);
    await addon.captureDisplay([]);
    await painter.pointer(600, 400);
    const picture = await decode((await addon.captureDisplay([], 1)).base64);
    assertColour(picture, 100 + TO_MIDDLE, 100 + TO_MIDDLE, GREY);
    assertColour(picture, 600 + TO_MIDDLE, 400 + TO_MIDDLE, MAGENTA, 24);
  });

  test('is cut off at the edges of the screen', async (t) => {
    const { addon, painter } = await pointerDesktop(t);
    await painter.pointer(0, 0);
    assertColour(await decode((await addon.captureDisplay([], 1)).base64), 5, 5, MAGENTA, 24);
    await painter.pointer(799, 599);
    const corner = await decode((await addon.captureDisplay([], 1)).base64);
    assertColour(corner, 798, 598, MAGENTA, 24);
    assertColour(corner, 780, 580, GREY, 24);
  });

  test('is in the picture of a region, too', async (t) => {
    const { addon, painter } = await pointerDesktop(t);
    await painter.pointer(400, 300);
    const { base64 } = await addon.captureRegion([], 350, 250, 100, 100, 100, 100, 1);
    const picture = await decode(base64);
    assertColour(picture, 50 + TO_MIDDLE, 50 + TO_MIDDLE, MAGENTA, 24);
    assertColour(picture, 80, 80, GREY);
  });

  test('is missing, and nothing else, on a server without XFIXES', async (t) => {
    const { addon, painter } = await pointerDesktop(t, { args: ['-extension', 'XFIXES'] });
    await painter.pointer(400, 300);
    const picture = await decode((await addon.captureDisplay([])).base64);
    assertColour(picture, 400 + TO_MIDDLE, 300 + TO_MIDDLE, GREY);
  });
});

describe('the quality', () => {
  test('makes the picture larger as it grows', async (t) => {
    const { addon, painter } = await startDesktop(t, { screen: '640x480x24' });
    await painter.window('w', { x: 100, y: 101, width: 203, height: 207, colour: RED });
    const lengths = [];
    for (const quality of [0.05, 0.25, 0.5, 0.75, 0.9, 1]) {
      lengths.push((await addon.captureDisplay([], quality)).base64.length);
    }
    for (let index = 1; index < lengths.length; ++index) {
      assert.ok(lengths[index] > lengths[index - 1], `sizes ${lengths}`);
    }
  });

  for (const quality of [0, -0.5, 1.1, Infinity, -Infinity, NaN, 'x', null, undefined]) {
    test(`${quality} gives the picture of the default, 0.75`, async (t) => {
      const { addon, painter } = await startDesktop(t, { screen: '640x480x24' });
      await painter.window('w', { x: 100, y: 101, width: 203, height: 207, colour: RED });
      const { base64 } = await addon.captureDisplay([], 0.75);
      assert.equal((await addon.captureDisplay([], quality)).base64, base64);
      assert.notEqual((await addon.captureDisplay([], 0.74)).base64, base64);
    });
  }
});

describe('bad arguments of captureDisplay', () => {
  for (const args of [[], [undefined], [null], ['com.example'], [{ length: 0 }], [1, 0.5]]) {
    const list = JSON.stringify(args).slice(1, -1);
    test(`(${list}) throws a plain Error with the usage`, async (t) => {
      const { addon } = startHost(t, NOWHERE);
      await assert.rejects(addon.captureDisplay(...args), {
        outcome: 'thrown',
        name: 'Error',
        message: 'captureDisplay(excludeBundleIds: string[], quality?: number, displayId?: number)',
      });
    });
  }

  test('more arguments than it has are ignored', async (t) => {
    const { addon } = await startDesktop(t, { screen: '320x200x24' });
    const { base64 } = await addon.captureDisplay([]);
    assert.equal((await addon.captureDisplay([], 0.75, 0, 'more', 5)).base64, base64);
  });
});
