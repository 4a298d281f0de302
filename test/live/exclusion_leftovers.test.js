'use strict';

// What is left of a window on the screen may not be in the picture either. A window without a
// background keeps what was on the screen until it paints.
const { describe, test } = require('node:test');
const { until } = require('../support/until.js');
const {
  MIDDLE,
  TEAL,
  assertLeavesOut,
  assertNoSecret,
  assertSame,
  capture,
  openScene,
  paintBackdrop,
  secretPixels,
  takeReference,
} = require('../support/left_out.js');

/** It covers the left half of the secret. */
const HALF = { x: 160, y: 100, width: 150, height: 260, colour: TEAL, wmClass: 'bare/Bare' };

const openSecret = ({ app }) => app.window('secret', MIDDLE);

const SURROUNDINGS = [
  ['', {}],
  [', under a window manager', { manager: true }],
  [', under a compositing manager', { compositor: 'xcompmgr' }],
];

/** Several pictures, none with anything of the secret; the last one. */
async function captureOften(scene, times = 5) {
  let picture;
  for (let time = 0; time < times; ++time) {
    picture = await capture(scene, ['Secret']);
    assertNoSecret(picture);
  }
  return picture;
}

describe('a window without a background behind the one that is left out', () => {
  const behind = (paints) => async (scene) => {
    await paintBackdrop(scene);
    await scene.painter.window('bare', { ...HALF, paints });
  };

  for (const [surroundings, options] of SURROUNDINGS) {
    test(`has its own colour as soon as it has painted again${surroundings}`, async (t) => {
      const parts = { behind: behind('asked'), secret: openSecret };
      const reference = await takeReference(t, options, parts);
      const scene = await openScene(t, options, parts);
      await assertLeavesOut(scene, ['Secret'], reference, { isEventual: true });
    });

    test(`shows nothing of it when it does not paint again${surroundings}`, async (t) => {
      const parts = { behind: behind('once'), secret: openSecret };
      const reference = await takeReference(t, options, parts);
      const scene = await openScene(t, options, parts);
      const picture = await captureOften(scene);
      const frame = { x: HALF.x - 10, y: HALF.y - 40, width: HALF.width + 20, height: 320 };
      assertSame(picture, reference, { tolerance: 6, except: frame });
    });

    test(`shows nothing of it when it has never painted${surroundings}`, async (t) => {
      const parts = { behind: behind('nothing'), secret: openSecret };
      await captureOften(await openScene(t, options, parts));
    });
  }

  test('shows nothing of it when it was above it, unpainted, and is below', async (t) => {
    const secret = async ({ app, painter }) => {
      await app.window('secret', MIDDLE);
      await painter.window('bare', { ...HALF, paints: 'once' });
      await app.raise('secret');
    };
    await captureOften(await openScene(t, {}, { secret }));
  });

  test('shows nothing of it as a child of a window that has one', async (t) => {
    const nested = async (scene) => {
      await paintBackdrop(scene);
      await scene.painter.window('child', { ...HALF, paints: 'once' });
      await scene.painter.embed('child', 'green');
    };
    await captureOften(await openScene(t, {}, { behind: nested, secret: openSecret }));
  });

  test('shows nothing of it when it was taken a picture of before', async (t) => {
    const scene = await openScene(t, {}, { behind: behind('once'), secret: openSecret });
    await capture(scene, []);
    await captureOften(scene);
  });
});

/** The windows that open above the secret and let it show through what they do not paint. */
const OPENED_ABOVE = {
  'that never paints': { paints: 'nothing' },
  'that paints its edges alone': { paints: 'frame' },
  'with an alpha channel that never paints': { paints: 'nothing', alpha: 0.5 },
  'with a border that never paints': { paints: 'nothing', border: { width: 6, colour: TEAL } },
  'with a hole that never paints': { paints: 'nothing', ring: true },
  'that overrides the redirection and never paints': { paints: 'nothing', managed: false },
};

describe('a window without a background above the one that is left out shows nothing of it', () => {
  for (const [description, kind] of Object.entries(OPENED_ABOVE)) {
    const open = ({ painter }) => painter.window('bare', { ...HALF, ...kind });
    // With a margin for the border, and for JPEG, which mixes the colours of neighbours.
    const [x, y, width, height] = [HALF.x - 16, HALF.y - 16, HALF.width + 48, HALF.height + 48];
    const area = { x, y, width, height };

    test(`${description}`, async (t) => {
      const parts = { secret: openSecret, above: open };
      const [reference, scene] = await Promise.all([
        takeReference(t, {}, parts),
        openScene(t, {}, parts),
      ]);
      assertSame(await captureOften(scene), reference, { tolerance: 6, except: area });
    });

    test(`${description}, opened between two pictures`, async (t) => {
      const scene = await openScene(t, {}, { secret: openSecret });
      await captureOften(scene, 2);
      await open(scene);
      await captureOften(scene);
    });
  }

  for (const [surroundings, options] of SURROUNDINGS.slice(1)) {
    test(`that never paints${surroundings}`, async (t) => {
      const above = ({ painter }) => painter.window('bare', { ...HALF, paints: 'nothing' });
      await captureOften(await openScene(t, options, { secret: openSecret, above }));
    });
  }

  test('that is opened, hidden and shown again', async (t) => {
    const scene = await openScene(t, {}, { secret: openSecret });
    for (let round = 0; round < 5; ++round) {
      if (round === 0) await scene.painter.window('bare', { ...HALF, paints: 'nothing' });
      else await scene.painter.show('bare');
      await captureOften(scene, 2);
      await scene.painter.hide('bare');
      await captureOften(scene, 1);
    }
  });
});

describe('nothing is shown of a window that came and went between two pictures', () => {
  /** The host keeps what it has shown; another window of the application is always there. */
  async function visit(t, wmClass, prepare) {
    const behind = async (scene) => {
      await paintBackdrop(scene);
      await prepare(scene);
      const host = { ...HALF, wmClass, managed: false, paints: 'nothing' };
      await scene.painter.window('host', host);
    };
    const secret = async ({ app }) => {
      await app.window('other', { ...MIDDLE, x: 560, y: 10, width: 40, height: 40 });
    };
    const scene = await openScene(t, {}, { behind, secret });
    const { app, painter } = scene;
    for (let round = 0; round < 3; ++round) {
      await captureOften(scene, 2);
      await app.window('guest', { ...MIDDLE, x: 0, y: 0, width: 100, height: 100 });
      await app.embed('guest', await painter.id('host'));
      await app.destroy('guest');
    }
    await captureOften(scene);
  }

  test('in the frame of a window manager', async (t) => {
    await visit(t, '-', ({ painter }) => painter.manage());
  });

  test('in a window of another program', async (t) => {
    await visit(t, 'host/Host', async () => {});
  });
});

describe('a window without a background that grows over the one that is left out', () => {
  const small = { ...HALF, width: 30, height: 260 };
  const grown = ({ painter }) => painter.resize('bare', HALF.width, HALF.height);

  for (const isCapturedBefore of [false, true]) {
    const moment = isCapturedBefore ? ', after a picture' : '';
    for (const paints of ['once', 'nothing']) {
      test(`shows nothing of it; it paints ${paints}${moment}`, async (t) => {
        const above = ({ painter }) => painter.window('bare', { ...small, paints });
        const scene = await openScene(t, {}, { secret: openSecret, above });
        if (isCapturedBefore) await captureOften(scene, 1);
        await grown(scene);
        await captureOften(scene);
      });
    }

    test(`has its own colour as soon as it has painted${moment}`, async (t) => {
      const above = ({ painter }) => painter.window('bare', { ...small, paints: 'asked' });
      const growing = async (scene) => {
        await above(scene);
        await grown(scene);
      };
      const [reference, scene] = await Promise.all([
        takeReference(t, {}, { above: growing }),
        openScene(t, {}, { secret: openSecret, above }),
      ]);
      if (isCapturedBefore) await captureOften(scene, 1);
      await grown(scene);
      await assertLeavesOut(scene, ['Secret'], reference, { isEventual: true });
    });
  }

  test('shows nothing of it when it moves over it unpainted', async (t) => {
    const aside = { ...HALF, x: 470, y: 20, paints: 'nothing' };
    const above = ({ painter }) => painter.window('bare', aside);
    const scene = await openScene(t, {}, { secret: openSecret, above });
    for (const x of [400, 330, 260, 190]) {
      await scene.painter.move('bare', x, 120);
      await captureOften(scene, 2);
    }
  });
});

test('a window that is falsely said to be hidden keeps nothing of it', async (t) => {
  const scene = await openScene(t, {}, { secret: openSecret });
  await captureOften(scene, 1);
  await scene.painter.window('bare', { ...HALF, paints: 'nothing' });
  await scene.painter.forge('bare');
  await captureOften(scene, 2);
});

test('a window that paints anew after the secret has gone keeps nothing of it', async (t) => {
  const behind = async (scene) => {
    await paintBackdrop(scene);
    await scene.painter.window('bare', { ...HALF, paints: 'asked' });
  };
  const scene = await openScene(t, {}, { behind, secret: openSecret });
  await captureOften(scene, 2);
  await scene.app.destroy('secret');
  const isClean = async () => secretPixels(await scene.painter.grab()) === 0;
  await until(isClean, 'nothing of the secret is on the screen');
  assertNoSecret(await capture(scene, []));
});
