'use strict';

// The arithmetic of docs/coordinates.md, by its own numbers and on real displays.
const assert = require('node:assert/strict');
const { test } = require('node:test');
const local = require('../support/addon.js');
const { startDesktop } = require('../support/desktop.js');
const { setMonitors } = require('../support/monitors.js');
const { codeOf, read, tableOf } = require('../support/pages.js');
const { assertColour, decode } = require('../support/picture.js');

const PAGE = 'coordinates.md';
const [BLUE, ORANGE, GREY] = ['#1a5fb4', '#b5541c', '#808080'];
/** Half the edge of a painted square, points. */
const HALF = 12;

/** The functions of the page; `addon` stands for what they require. */
function functionsOf(addon = {}) {
  const names = ['toDesktop', 'toPicture', 'captureDesktopRegion', 'regionToDesktop'];
  const source = `${codeOf(PAGE, 'js').join('\n')}\nreturn { ${names.join(', ')} };`;
  return new Function('require', source)(() => addon);
}

/** The two numbers of a cell. */
function pair(cell) {
  return cell.split(/, | × /).map(Number);
}

/** The rows of the page's table. */
function rows() {
  return tableOf(PAGE, 'Display').map(([name, ...cells]) => {
    const [origin, points, picture, pixel, point] = cells.map(pair);
    const [originX, originY] = origin;
    const [displayWidth, displayHeight] = points;
    const [width, height] = picture;
    const shot = { originX, originY, displayWidth, displayHeight, width, height };
    return { name, shot, pixel, point };
  });
}

test('the numbers in the table follow from its functions, both ways', () => {
  const { toDesktop, toPicture } = functionsOf();
  assert.equal(rows().length, 4);
  for (const { shot, pixel, point } of rows()) {
    assert.deepEqual(Object.values(toDesktop(shot, ...pixel)), point);
    assert.deepEqual(Object.values(toPicture(shot, ...point)), pixel);
  }
});

test('the sizes of the pictures are those that the budget gives', () => {
  const text = read(PAGE).replace(/\s+/g, ' ');
  assert.match(text, /1920 × 1080 gives 1456 × 819, and 2880 × 1800, .* gives 1390 × 868/);
  assert.deepEqual(local.calculateTargetSize(1920, 1080), { width: 1456, height: 819 });
  assert.deepEqual(local.calculateTargetSize(2880, 1800), { width: 1390, height: 868 });
});

test('the figure shows the numbers of the table', () => {
  const figure = read('images/coordinates.svg');
  for (const { shot, pixel, point } of rows()) {
    assert.ok(figure.includes(`>${shot.displayWidth} x ${shot.displayHeight} points`));
    assert.ok(figure.includes(`>${shot.width} x ${shot.height} pixels<`));
    for (const place of [pixel, point]) {
      // The far corner of a picture has no room for a label.
      if (place[0] < shot.width) assert.ok(figure.includes(`>${place.join(', ')}<`), `${place}`);
    }
  }
});

/** The figure's displays, with a square around each of its two points; on X11 a point is a pixel. */
async function startFigure(t) {
  const desktop = await startDesktop(t, { screen: '3360x1080x24' });
  await setMonitors(desktop.env, {
    primary: { x: 1920, y: 180, width: 1440, height: 900 },
    left: { x: 0, y: 0, width: 1920, height: 1080 },
  });
  const { painter } = desktop;
  await painter.background(GREY);
  const square = { width: 2 * HALF, height: 2 * HALF };
  const at = (x, y) => ({ ...square, x: 1920 + x - HALF, y: 180 + y - HALF });
  await painter.window('blue', { ...at(-480, 180), colour: BLUE });
  await painter.window('orange', { ...at(720, 225), colour: ORANGE });
  const displays = await desktop.addon.listDisplays();
  const named = (name) => displays.find((display) => display.name === name);
  return { ...desktop, left: named('left'), primary: named('primary') };
}

test('a picture shows each point at its pixel, and the pointer goes where that is', async (t) => {
  const { addon, left, primary } = await startFigure(t);
  const { toDesktop, toPicture } = functionsOf();
  const cases = [
    [left, [-480, 180], BLUE],
    [primary, [720, 225], ORANGE],
  ];
  for (const [display, point, colour] of cases) {
    const shot = await addon.captureDisplay([], 0.9, display.id);
    const { px, py } = toPicture(shot, ...point);
    const picture = await decode(shot.base64);
    assertColour(picture, px, py, colour);
    const corner = toPicture(shot, point[0] + 2 * HALF, point[1] + 2 * HALF);
    assertColour(picture, corner.px, corner.py, GREY);

    const { x, y } = toDesktop(shot, px, py);
    await addon.mouseMove(x, y);
    assert.deepEqual(Object.values(await addon.getCursorPosition()), point);
  }
});

test('a region of the desktop is taken from its display, and maps back', async (t) => {
  const { addon, left } = await startFigure(t);
  const { captureDesktopRegion, regionToDesktop } = functionsOf(addon);
  const area = [-500, 160, 60, 40];
  const shot = await captureDesktopRegion(left, ...area, 2);
  assert.deepEqual([shot.width, shot.height], [120, 80]);
  const picture = await decode(shot.base64);
  assertColour(picture, 40, 40, BLUE);
  assertColour(picture, 100, 40, GREY);
  assert.deepEqual(regionToDesktop(shot, ...area, 40, 40), { x: -480, y: 180 });
});
