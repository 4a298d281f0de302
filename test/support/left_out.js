'use strict';

// Scenes with windows that are to be left out of the picture, and what is right then: the picture
// of the same scene in which they have never been opened.
const assert = require('node:assert/strict');
const { startDesktop } = require('./desktop.js');
const { assertColour, decode } = require('./picture.js');
const { until } = require('./until.js');

/**
 * The colour of what is left out. Red is above green in it, and in no other colour of a scene. That
 * holds for every mixture of those too, and red less green depends on the chroma alone; so whatever
 * JPEG does to their edges, a pixel with more red than green has something of the secret in it.
 */
const SECRET = '#ff00ff';
const NOTICEABLE = 24;

const GREEN = '#20a040';
const BLUE = '#2040c0';
const TEAL = '#10b0b0';
const SLATE = '#405868';

const SIZE = { width: 640, height: 480 };
const SCREEN = `${SIZE.width}x${SIZE.height}x24`;

/** In the middle of the screen, above both windows of a backdrop. */
const MIDDLE = {
  ...{ x: 200, y: 140, width: 220, height: 180 },
  ...{ colour: SECRET, wmClass: 'secret/Secret' },
};

/** How many pixels show something of the secret. */
function secretPixels({ rgb }) {
  let count = 0;
  for (let byte = 0; byte < rgb.length; byte += 3) {
    if (rgb[byte] - rgb[byte + 1] > NOTICEABLE) ++count;
  }
  return count;
}

function assertNoSecret(picture) {
  assert.equal(secretPixels(picture), 0, 'pixels of what is left out');
}

/** The whole screen, each pixel one of the picture; `base64` is what the addon made of it. */
async function capture({ addon }, excluded, displayId) {
  const { width, height } = SIZE;
  const area = [0, 0, width, height, width, height];
  const { base64 } = await addon.captureRegion(excluded, ...area, 1, displayId);
  return { base64, ...(await decode(base64)) };
}

/** Whether a point lies in a rectangle, if there is one. */
function isWithin(x, y, area) {
  if (!area) return false;
  return x >= area.x && y >= area.y && x < area.x + area.width && y < area.y + area.height;
}

/**
 * What two pictures differ in by more than `tolerance`, in words; undefined when they are the same.
 * `except`: a rectangle that does not matter.
 */
function difference(picture, reference, { tolerance = 0, except } = {}) {
  if (picture.base64 === reference.base64) return undefined;
  const { width } = reference;
  let count = 0;
  let first;
  for (let byte = 0; byte < reference.rgb.length; ++byte) {
    if (Math.abs(picture.rgb[byte] - reference.rgb[byte]) <= tolerance) continue;
    const pixel = Math.floor(byte / 3);
    const [x, y] = [pixel % width, Math.floor(pixel / width)];
    if (isWithin(x, y, except)) continue;
    ++count;
    first ??= `at ${x}, ${y} rgb(${picture.at(x, y)}) instead of rgb(${reference.at(x, y)})`;
  }
  return first && `${count} channels differ, first ${first}`;
}

/** The pictures show the same. */
function assertSame(picture, reference, options) {
  assert.equal(difference(picture, reference, options), undefined);
}

/** A wallpaper, and a green and a blue window of other applications that overlap. */
async function paintBackdrop({ painter }) {
  await painter.wallpaper('#204060', '#206040');
  const green = { x: 60, y: 60, width: 260, height: 220, colour: GREEN };
  await painter.window('green', { ...green, wmClass: 'green/Green' });
  const blue = { x: 280, y: 200, width: 260, height: 220, colour: BLUE };
  await painter.window('blue', { ...blue, wmClass: 'blue/Blue' });
}

const STILL_GRABS = 8;

/** Resolves when everybody has painted and nothing on the screen changes any more. */
async function standsStill({ painter, app }) {
  await painter.settle();
  await app.settle();
  let last;
  let same = 0;
  await until(async () => {
    const { rgb } = await painter.grab();
    same = last?.equals(rgb) ? same + 1 : 0;
    last = rgb;
    return same === STILL_GRABS;
  }, 'the screen stands still');
}

/** Resolves when the screen shows the secret. */
async function secretAppears({ painter }) {
  const isShown = async () => secretPixels(await painter.grab()) > 0;
  await until(isShown, 'the secret is on the screen');
}

const nothing = async () => {};

/** A desktop with `app`, a further painter: the application that is to be left out. */
async function startScene(t, options) {
  const desktop = await startDesktop(t, { screen: SCREEN, ...options });
  return { ...desktop, app: desktop.startPainter(), options };
}

/** Letters of a frame, and mixtures of colours, do not come out quite the same each time. */
const SHARED_TOLERANCE = 6;

/** Whether somebody else has a part in what is on the screen, and takes his time. */
function isShared({ options }) {
  return Boolean(options.manager || options.compositor);
}

/** The last window has the focus, so that the others' frames look the same without the secret. */
async function finish(scene) {
  const corner = { x: 600, y: 450, width: 20, height: 10, colour: TEAL };
  await scene.painter.window('last', { ...corner, wmClass: 'last/Last' });
  if (isShared(scene)) await standsStill(scene);
  await scene.app.settle();
  await scene.painter.settle();
}

/** The picture of a scene in which the secret has never been; `instead` is done in its place. */
async function takeReference(t, options, parts) {
  const { behind = paintBackdrop, instead = nothing, above = nothing } = parts;
  const scene = await startScene(t, options);
  for (const step of [behind, instead, above, finish]) await step(scene);
  const reference = await capture(scene, []);
  assertNoSecret(reference);
  return reference;
}

/** The scene with the secret, and proof that it is on the screen. */
async function openScene(t, options, { behind = paintBackdrop, secret, above = nothing, at = [] }) {
  const scene = await startScene(t, options);
  for (const step of [behind, secret, above, finish]) await step(scene);
  const screen = await scene.painter.grab();
  assert.ok(secretPixels(screen) > 0, 'the secret is on the screen');
  const colourAt = (x, y) => [...screen.rgb.subarray(3 * (y * screen.width + x)).subarray(0, 3)];
  for (const [x, y, colour] of at) assertColour({ ...screen, at: colourAt }, x, y, colour, 2);
  return scene;
}

/**
 * The picture without `excluded` is the reference: at once or, where others have a part in it,
 * soon. No picture until then shows the secret.
 */
async function assertLeavesOut(scene, excluded, reference, { isEventual, ...given } = {}) {
  const comparison = isShared(scene) ? { tolerance: SHARED_TOLERANCE, ...given } : given;
  const take = async () => {
    const picture = await capture(scene, excluded);
    assertNoSecret(picture);
    return picture;
  };
  let picture = await take();
  if (isShared(scene) || isEventual) {
    const isSame = async () => !difference((picture = await take()), reference, comparison);
    await until(isSame, 'the picture is right').catch(() => {});
  }
  assertSame(picture, reference, comparison);
}

/** A picture of everything is that of the screen, and so shows the secret. */
async function assertShowsAll(scene) {
  const picture = await capture(scene, []);
  assert.ok(secretPixels(picture) > 0, 'the secret is in the picture of everything');
}

/**
 * Both desktops of a scene; the first picture leaves out, one shows all, one leaves out again.
 * `scene`: { behind, secret, above, instead, at }, see above. `given`: `excluded`, `isEventual`
 * when the picture may become right a little later, and what difference() takes.
 */
async function assertSceneLeavesOut(t, options, scene, given = {}) {
  const { excluded = ['Secret'], ...comparison } = given;
  const [reference, opened] = await Promise.all([
    takeReference(t, options, scene),
    openScene(t, options, scene),
  ]);
  await assertLeavesOut(opened, excluded, reference, comparison);
  await assertShowsAll(opened);
  await assertLeavesOut(opened, excluded, reference, comparison);
  return { ...opened, reference };
}

module.exports = {
  ...{ SECRET, GREEN, BLUE, TEAL, SLATE, MIDDLE, SCREEN, SIZE },
  ...{ assertLeavesOut, assertNoSecret, assertSame, assertSceneLeavesOut, assertShowsAll },
  ...{ capture, difference, openScene, paintBackdrop, secretAppears, secretPixels },
  ...{ standsStill, startScene, takeReference },
};
