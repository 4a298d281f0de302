'use strict';

// Kinds of windows that are left out, and what is behind, between and above them.
const { describe, test } = require('node:test');
const {
  BLUE,
  GREEN,
  MIDDLE,
  SECRET,
  SLATE,
  TEAL,
  assertSceneLeavesOut,
  paintBackdrop,
} = require('../support/left_out.js');

/** What can be said of a window, without influence on where it is. */
const KINDS = {
  'that is plain': {},
  'with an alpha channel': { alpha: 0.5 },
  'with a hole in it': { ring: true },
  'that overrides the redirection': { managed: false },
  'with a border': { border: { width: 9, colour: SECRET } },
  'with a hole and a border': { ring: true, border: { width: 5, colour: SECRET } },
  'without a background, painted once': { paints: 'once' },
  'without a background, painted when exposed': { paints: 'asked' },
  'without a background, of which only the edges are painted': { paints: 'frame' },
};

const SURROUNDINGS = {
  'under a window manager': { manager: true },
  'under the compositing manager xcompmgr': { compositor: 'xcompmgr' },
  'under the compositing manager picom': { compositor: 'picom' },
  'under a window manager and a compositing manager': { manager: true, compositor: 'xcompmgr' },
};

describe('a window is left out', () => {
  for (const [description, kind] of Object.entries(KINDS)) {
    test(description, async (t) => {
      await assertSceneLeavesOut(
        t,
        {},
        { secret: ({ app }) => app.window('secret', { ...MIDDLE, ...kind }) },
      );
    });
  }

  for (const [description, options] of Object.entries(SURROUNDINGS)) {
    test(`of every kind, ${description}`, async (t) => {
      const secret = async ({ app }) => {
        let place = 0;
        for (const kind of Object.values(KINDS)) {
          const [column, row] = [place % 3, Math.floor(place / 3)];
          const [x, y] = [20 + 190 * column, 30 + 140 * row];
          const window = { ...MIDDLE, x, y, width: 160, height: 100, ...kind };
          await app.window(`secret${place++}`, window);
        }
      };
      await assertSceneLeavesOut(t, options, { secret });
    });
  }

  test('when it covers all of the screen', async (t) => {
    const all = { ...MIDDLE, x: 0, y: 0, width: 640, height: 480 };
    await assertSceneLeavesOut(t, {}, { secret: ({ app }) => app.window('secret', all) });
  });

  test('when parts of it are off the screen', async (t) => {
    const secret = async ({ app }) => {
      await app.window('topLeft', { ...MIDDLE, x: -100, y: -70 });
      const border = { width: 6, colour: SECRET };
      await app.window('right', { ...MIDDLE, x: 530, y: 200, border });
      await app.window('bottom', { ...MIDDLE, x: 100, y: 400, ring: true });
      await app.window('outside', { ...MIDDLE, x: 700, y: 500 });
    };
    await assertSceneLeavesOut(t, {}, { secret });
  });

  for (const [description, options] of [
    ['', {}],
    [', under a window manager', { manager: true }],
  ]) {
    test(`with nine more of its application that overlap${description}`, async (t) => {
      const secret = async ({ app }) => {
        for (let place = 0; place < 10; ++place) {
          const [x, y] = [40 + 30 * place, 40 + 20 * place];
          await app.window(`secret${place}`, { ...MIDDLE, x, y });
        }
      };
      await assertSceneLeavesOut(t, options, { secret });
    });
  }
});

describe('where a window is left out there is what is behind it', () => {
  /** A window of every kind in the colours of others. */
  async function paintKinds(scene) {
    await paintBackdrop(scene);
    const place = { y: 120, width: 60, height: 220, wmClass: 'other/Other' };
    const others = [
      { alpha: 0.5, colour: TEAL },
      { ring: true, colour: TEAL },
      { border: { width: 7, colour: SLATE }, colour: GREEN },
      { managed: false, colour: BLUE },
      { paints: 'asked', colour: TEAL },
    ];
    for (const [index, kind] of others.entries()) {
      await scene.painter.window(`other${index}`, { ...place, x: 150 + 65 * index, ...kind });
    }
  }

  const secret = ({ app }) => app.window('secret', { ...MIDDLE, x: 140, width: 350 });

  test('other windows of every kind', async (t) => {
    await assertSceneLeavesOut(t, {}, { behind: paintKinds, secret }, { isEventual: true });
  });

  for (const [description, options] of Object.entries(SURROUNDINGS)) {
    test(`other windows of every kind, ${description}`, async (t) => {
      await assertSceneLeavesOut(t, options, { behind: paintKinds, secret });
    });
  }

  test('a part of another window of its own shape', async (t) => {
    const behind = async (scene) => {
      await paintBackdrop(scene);
      const ring = { x: 180, y: 120, width: 300, height: 240, colour: TEAL, ring: true };
      await scene.painter.window('ring', { ...ring, wmClass: 'ring/Ring' });
    };
    await assertSceneLeavesOut(
      t,
      {},
      {
        behind,
        secret: ({ app }) => app.window('secret', { ...MIDDLE, ring: true }),
        at: [[276, 230, TEAL]],
      },
    );
  });
});

describe('a window that is left out leaves alone', () => {
  const cover = { x: 240, y: 180, width: 100, height: 100, colour: TEAL, wmClass: 'cover/Cover' };
  const secret = ({ app }) => app.window('secret', MIDDLE);

  test('what is above it', async (t) => {
    await assertSceneLeavesOut(
      t,
      {},
      {
        secret,
        above: ({ painter }) => painter.window('cover', cover),
        at: [
          [290, 230, TEAL],
          [210, 150, SECRET],
        ],
      },
    );
  });

  for (const [description, kind] of [
    ['with a hole, through which it showed', { ring: true }],
    ['with a border', { border: { width: 8, colour: SLATE } }],
    ['that overrides the redirection', { managed: false }],
    ['that is painted when exposed', { paints: 'asked' }],
  ]) {
    test(`a window above it ${description}`, async (t) => {
      const above = ({ painter }) => painter.window('cover', { ...cover, ...kind });
      const isEventual = kind.paints !== undefined;
      await assertSceneLeavesOut(t, {}, { secret, above }, { isEventual });
    });
  }

  test('windows of others that lie between two of its application', async (t) => {
    const behind = async (scene) => {
      await paintBackdrop(scene);
      await scene.painter.window('cover', cover);
    };
    const sandwich = async ({ app, painter }) => {
      await app.window('below', { ...MIDDLE, x: 160, y: 100 });
      await painter.raise('cover');
      await app.window('above', { ...MIDDLE, x: 260, y: 200, width: 60, height: 60 });
    };
    await assertSceneLeavesOut(t, {}, { behind, secret: sandwich });
  });
});
