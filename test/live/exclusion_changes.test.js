'use strict';

// Applications that are left out of one picture after the other, while the screen changes.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startHost } = require('../support/host.js');
const { assertColour } = require('../support/picture.js');
const {
  BLUE,
  MIDDLE,
  SECRET,
  TEAL,
  assertLeavesOut,
  assertNoSecret,
  assertSame,
  assertShowsAll,
  capture,
  openScene,
  secretAppears,
  takeReference,
} = require('../support/left_out.js');

const openSecret = ({ app }) => app.window('secret', MIDDLE);

/** The scene with the secret and the picture without it. */
async function startBoth(t, options, parts = {}) {
  const scene = { secret: openSecret, ...parts };
  const [reference, opened] = await Promise.all([
    takeReference(t, options, scene),
    openScene(t, options, scene),
  ]);
  return { ...opened, reference };
}

const SURROUNDINGS = [
  ['', {}],
  [', under a window manager', { manager: true }],
  [', under a compositing manager', { compositor: 'xcompmgr' }],
];

for (const [surroundings, options] of SURROUNDINGS) {
  describe(`a window stays left out${surroundings}`, () => {
    test('wherever it moves', async (t) => {
      const scene = await startBoth(t, options);
      for (const [x, y] of [[10, 30], [300, 40], [-80, 300], [450, 330], [200, 140]]) {
        await scene.app.move('secret', x, y);
        await assertLeavesOut(scene, ['Secret'], scene.reference);
      }
      await assertShowsAll(scene);
    });

    test('however large it becomes', async (t) => {
      const scene = await startBoth(t, options);
      for (const [width, height] of [[20, 20], [400, 300], [64, 200], [640, 480]]) {
        await scene.app.resize('secret', width, height);
        await assertLeavesOut(scene, ['Secret'], scene.reference);
      }
    });

    test('as it is hidden, shown, closed and opened again', async (t) => {
      const scene = await startBoth(t, options);
      const { app, painter, reference } = scene;
      const check = async () => {
        if (options.manager) await painter.focus('last');
        await assertLeavesOut(scene, ['Secret'], reference);
      };
      for (let round = 0; round < 3; ++round) {
        await check();
        await app.hide('secret');
        await check();
        await app.show('secret');
        await secretAppears(scene);
        await check();
        await app.destroy('secret');
        await check();
        await openSecret(scene);
        await secretAppears(scene);
      }
      await assertShowsAll(scene);
    });
  });
}

describe('a window stays left out', () => {
  test('as it is iconified and comes back', async (t) => {
    const scene = await startBoth(t, { manager: true });
    for (let round = 0; round < 3; ++round) {
      await scene.app.iconify('secret');
      await scene.painter.focus('last');
      await assertLeavesOut(scene, ['Secret'], scene.reference);
      await scene.app.show('secret');
      await secretAppears(scene);
      await scene.painter.focus('last');
      await assertLeavesOut(scene, ['Secret'], scene.reference);
    }
  });

  test('below and above the others in turn', async (t) => {
    const scene = await startBoth(t, {});
    for (const change of ['lower', 'raise', 'lower', 'raise']) {
      await scene.app[change]('secret');
      await assertLeavesOut(scene, ['Secret'], scene.reference);
    }
  });

  test('while it moves and pictures are taken', async (t) => {
    const scene = await startBoth(t, {});
    let isMoving = true;
    const moving = (async () => {
      for (let step = 0; isMoving; ++step) {
        await scene.app.move('secret', (step * 37) % 600, (step * 23) % 440);
      }
    })();
    for (let time = 0; time < 40; ++time) {
      const picture = await capture(scene, ['Secret']);
      assertNoSecret(picture);
      assertSame(picture, scene.reference);
    }
    isMoving = false;
    await moving;
  });

  test('when several pictures are asked for at once', async (t) => {
    const scene = await startBoth(t, {});
    const lists = [['Secret'], [], ['Secret', 'Nobody'], ['Secret'], [], ['Secret']];
    const pictures = await Promise.all(lists.map((excluded) => capture(scene, excluded)));
    for (const [index, picture] of pictures.entries()) {
      if (lists[index].length > 0) assertSame(picture, scene.reference);
      else assertColour(picture, 300, 250, SECRET);
    }
  });
});

describe('what is behind is shown as it is now', () => {
  const behind = async ({ painter }) => {
    await painter.wallpaper('#204060', '#206040');
    const plain = { x: 220, y: 160, width: 120, height: 100, colour: BLUE, wmClass: 'plain/Plain' };
    await painter.window('plain', plain);
  };

  test('when a window behind moves, closes or opens', async (t) => {
    const scene = await startBoth(t, {}, { behind });
    const { painter } = scene;
    await assertLeavesOut(scene, ['Secret'], scene.reference);
    await painter.move('plain', 260, 190);
    const moved = await capture(scene, ['Secret']);
    assertNoSecret(moved);
    assertColour(moved, 262, 192, BLUE);
    assertColour(moved, 375, 285, BLUE);
    await painter.destroy('plain');
    const late = { x: 240, y: 150, width: 90, height: 90, colour: TEAL, wmClass: 'late/Late' };
    await painter.window('late', late);
    await scene.app.raise('secret');
    const replaced = await capture(scene, ['Secret']);
    assertNoSecret(replaced);
    assertColour(replaced, 285, 195, TEAL);
    assert.ok(replaced.at(370, 280)[2] < 110, 'the closed window is gone');
    await assertShowsAll(scene);
  });

  test('when the wallpaper changes', async (t) => {
    const change = ({ painter }) => painter.background('#10b0b0');
    const scene = await startBoth(t, {}, { behind });
    await assertLeavesOut(scene, ['Secret'], scene.reference);
    const other = await takeReference(t, {}, { behind, above: change });
    await change(scene);
    await assertLeavesOut(scene, ['Secret'], other);
  });
});

describe('the screen itself', () => {
  for (const [surroundings, options] of SURROUNDINGS) {
    test(`looks the same after pictures and after the host has ended${surroundings}`, async (t) => {
      const parts = { secret: openSecret };
      const scene = await openScene(t, options, parts);
      const before = await scene.painter.grab();
      for (let time = 0; time < 3; ++time) assertNoSecret(await capture(scene, ['Secret']));
      await scene.painter.settle();
      const after = await scene.painter.grab();
      assert.ok(after.rgb.equals(before.rgb), 'the screen has changed');
      await scene.host.end();
      await scene.painter.settle();
      await scene.app.settle();
      const atLast = await scene.painter.grab();
      assert.ok(atLast.rgb.equals(before.rgb), 'the screen has changed with the end of the host');
    });
  }
});

test('two hosts leave out different applications at the same time', async (t) => {
  const parts = {
    secret: async (scene) => {
      await openSecret(scene);
      const another = { ...MIDDLE, x: 20, y: 20, colour: TEAL, wmClass: 'another/Another' };
      await scene.painter.window('another', another);
    },
    instead: ({ painter }) =>
      painter.window('another', {
        ...{ ...MIDDLE, x: 20, y: 20, colour: TEAL },
        wmClass: 'another/Another',
      }),
  };
  const scene = await startBoth(t, {}, parts);
  const second = startHost(t, scene.env);
  for (let round = 0; round < 5; ++round) {
    const [first, other] = await Promise.all([
      capture(scene, ['Secret']),
      capture(second, ['Another']),
    ]);
    assertSame(first, scene.reference);
    assertColour(other, 300, 250, SECRET);
    assert.ok(other.at(30, 30)[1] < 110, 'the other one is left out');
  }
  await second.end();
  await assertLeavesOut(scene, ['Secret'], scene.reference);
});

describe('a window stays left out when a compositing manager', () => {
  for (const name of ['xcompmgr', 'picom']) {
    test(`${name} comes and goes`, async (t) => {
      const scene = await startBoth(t, {});
      const shared = { ...scene, options: { compositor: name } };
      const check = () => assertLeavesOut(shared, ['Secret'], scene.reference);
      await check();
      for (let round = 0; round < 2; ++round) {
        const end = await scene.startCompositor(name);
        await check();
        await assertShowsAll(scene);
        await end();
        await check();
      }
    });
  }
});
