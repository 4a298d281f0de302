'use strict';

// Applications are left out while windows open, move, rise, grow and close without a pause.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { assertColour } = require('../support/picture.js');
const {
  BLUE,
  GREEN,
  SECRET,
  SLATE,
  TEAL,
  assertNoSecret,
  capture,
  secretPixels,
  standsStill,
  startScene,
} = require('../support/left_out.js');

/** Of each kind of window: 200 in all with `scripts/live --full`. */
const PICTURES = process.env.DESKHAND_FULL ? 25 : 8;
/** More than the one window that stays shows of the secret. */
const STORM_PIXELS = 1500;

const EVERYWHERE = {
  ...{ x: 0, y: 0, width: 640, height: 480 },
  ...{ colour: SECRET, wmClass: 'secret/Secret' },
};

/** The kinds of windows that the secret's storm has. */
const KINDS = {
  'plain windows': {},
  'windows with an alpha channel': { alpha: 0.5 },
  'windows with holes': { ring: true },
  'windows that override the redirection': { managed: false },
  'windows with borders': { border: { width: 6, colour: SECRET } },
  'windows without a background, painted when exposed': { paints: 'asked' },
  'windows without a background, painted once': { paints: 'once' },
  'windows without a class': { wmClass: '-', managed: false },
};

/** Points that no window of the others' storm ever covers, and what is there behind the secret. */
const PROBES = [
  [20, 20, GREEN],
  [320, 20, GREEN],
  [620, 20, GREEN],
  [20, 460, BLUE],
  [320, 460, BLUE],
  [620, 460, BLUE],
];

/** Where the others' windows storm: between the rows of probes. */
const BETWEEN = { x: 0, y: 60, width: 640, height: 360, wmClass: 'other/Other' };

/**
 * The probes' windows, and others of all kinds that storm between them. Of the secret one small
 * window stays, so that its application is always there.
 */
async function startOthers(scene, { steady = false } = {}) {
  const { painter, app } = scene;
  await painter.background(SLATE);
  const row = { x: 0, width: 640, height: 50, managed: false };
  await painter.window('top', { ...row, y: 0, colour: GREEN, wmClass: 'top/Top' });
  await painter.window('bottom', { ...row, y: 430, colour: BLUE, wmClass: 'bottom/Bottom' });
  const anchor = { ...EVERYWHERE, x: 400, y: 300, width: 30, height: 30 };
  await app.window('anchor', { ...anchor, managed: false });
  const others = [{}, { paints: 'nothing' }, { paints: 'frame' }, { paints: 'asked', ring: true }];
  const storms = [];
  for (const [seed, kind] of others.entries()) {
    const other = scene.startPainter();
    await other.storm(seed + 1, { ...BETWEEN, colour: TEAL, ...kind }, { steady });
    storms.push(other);
  }
  return storms;
}

/** A storm with the secret's windows, and pictures without them meanwhile. */
async function captureInStorm(scene, seed, kind, { steady = false, areProbesBare = true } = {}) {
  const { app } = scene;
  await app.storm(seed, { ...EVERYWHERE, ...kind }, { steady });
  let seen = 0;
  for (let taken = 0; taken < PICTURES; ++taken) {
    const picture = await capture(scene, ['Secret']);
    assertNoSecret(picture);
    if (areProbesBare) for (const probe of PROBES) assertColour(picture, ...probe);
    seen += secretPixels(await scene.painter.grab()) > STORM_PIXELS;
  }
  assert.ok((await app.calm()) > PICTURES, 'the secret was in a storm');
  assert.ok(seen > 0, 'the secret was on the screen');
}

async function endStorms(storms) {
  for (const storm of storms) assert.ok((await storm.calm()) > PICTURES, 'others were in a storm');
}

describe('nothing of an application is in any picture', () => {
  for (const [surroundings, options] of [
    ['without a window manager', {}],
    ['under a compositing manager', { compositor: 'xcompmgr' }],
  ]) {
    test(`in a storm of windows, ${surroundings}`, async (t) => {
      const scene = await startScene(t, options);
      const storms = await startOthers(scene);
      let seed = 100;
      for (const kind of Object.values(KINDS)) await captureInStorm(scene, seed++, kind);
      await endStorms(storms);
    });
  }

  test('in a storm of windows that stay open, under a window manager', async (t) => {
    const scene = await startScene(t, { manager: true });
    const kind = { border: { width: 4, colour: SECRET } };
    for (const [seed, some] of [{}, kind, { paints: 'asked' }].entries()) {
      await captureInStorm(scene, seed, some, { steady: true, areProbesBare: false });
    }
  });

  test('in a storm of windows that come and go, under a window manager', async (t) => {
    const scene = await startScene(t, { manager: true });
    const storms = await startOthers(scene);
    let seed = 200;
    // A frame may be there a little longer than its window: the probes are not always bare.
    const menus = { wmClass: '-', managed: false };
    for (const kind of [{}, { alpha: 0.5 }, { paints: 'asked' }, menus]) {
      await captureInStorm(scene, seed++, kind, { areProbesBare: false });
    }
    await endStorms(storms);
  });

  test('and when a storm is over the picture is that of the others alone', async (t) => {
    const scene = await startScene(t, {});
    const storms = await startOthers(scene);
    await captureInStorm(scene, 300, {});
    await endStorms(storms);
    await standsStill(scene);
    const picture = await capture(scene, ['Secret']);
    assertNoSecret(picture);
    assertColour(picture, 415, 315, SLATE);
    assertColour(await capture(scene, []), 415, 315, SECRET);
  });
});
