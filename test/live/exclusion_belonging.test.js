'use strict';

// Which windows belong to an application that is left out.
const { describe, test } = require('node:test');
const { assertColour } = require('../support/picture.js');
const {
  GREEN,
  MIDDLE,
  SECRET,
  TEAL,
  assertLeavesOut,
  assertNoSecret,
  assertSceneLeavesOut,
  capture,
  openScene,
  paintBackdrop,
  takeReference,
} = require('../support/left_out.js');

/** A window without a class, as menus are. */
const MENU = { x: 380, y: 260, width: 120, height: 140, colour: SECRET, managed: false };
/** What is to stay in the picture. */
const SHOWN_MENU = { ...MENU, colour: TEAL };

const openSecret = ({ app }) => app.window('secret', MIDDLE);

describe('a window without a class is left out', () => {
  for (const [surroundings, options] of [
    ['', {}],
    [', under a window manager', { manager: true }],
    [', under a compositing manager', { compositor: 'xcompmgr' }],
  ]) {
    test(`when its process has a window that is${surroundings}`, async (t) => {
      const secret = async (scene) => {
        await openSecret(scene);
        await scene.app.window('menu', MENU);
        await scene.app.window('submenu', { ...MENU, x: 480, y: 300, alpha: 0.5 });
      };
      await assertSceneLeavesOut(t, options, { secret, at: [[440, 330, SECRET]] });
    });

    test(`when it is transient for a window that is${surroundings}`, async (t) => {
      const secret = async ({ app, startPainter }) => {
        await app.window('secret', MIDDLE);
        const helper = startPainter();
        await helper.window('dialog', { ...MENU, transientFor: await app.id('secret') });
        await helper.window('menu', { ...MENU, x: 100, transientFor: 'dialog' });
      };
      await assertSceneLeavesOut(t, options, { secret, at: [[440, 330, SECRET]] });
    });
  }

  test('when it was opened before any that has a class', async (t) => {
    const secret = async (scene) => {
      await scene.app.window('menu', MENU);
      await openSecret(scene);
    };
    await assertSceneLeavesOut(t, {}, { secret, at: [[440, 330, SECRET]] });
  });

  test('when the others of its process are hidden, and one of another is shown', async (t) => {
    const secret = async ({ app, painter }) => {
      await app.window('hidden', MIDDLE);
      await app.window('menu', MENU);
      await app.hide('hidden');
      await painter.window('shown', { ...MIDDLE, x: 20, width: 60 });
    };
    await assertSceneLeavesOut(t, {}, { secret, at: [[440, 330, SECRET]] });
  });
});

describe('a window is not left out', () => {
  test('that has no class and is of another process', async (t) => {
    const above = ({ painter }) => painter.window('menu', SHOWN_MENU);
    await assertSceneLeavesOut(t, {}, { secret: openSecret, above, at: [[440, 330, TEAL]] });
  });

  test('of the same process that has another class', async (t) => {
    const above = ({ app }) => app.window('other', { ...SHOWN_MENU, wmClass: 'secret/Other' });
    await assertSceneLeavesOut(t, {}, { secret: openSecret, above, at: [[440, 330, TEAL]] });
  });

  test('of the same process that is transient for a window of another application', async (t) => {
    const above = async ({ app, painter }) => {
      await app.window('dialog', { ...SHOWN_MENU, transientFor: await painter.id('green') });
    };
    await assertSceneLeavesOut(t, {}, { secret: openSecret, above, at: [[440, 330, TEAL]] });
  });

  test('of another application that is transient for one that is', async (t) => {
    // In the reference it is transient for another one: the order on the screen is the same.
    const open = async ({ painter }, owner) => {
      const dialog = { ...SHOWN_MENU, wmClass: 'helper/Helper', transientFor: owner };
      await painter.window('dialog', dialog);
    };
    const secret = async (scene) => {
      await openSecret(scene);
      await open(scene, await scene.app.id('secret'));
    };
    const instead = (scene) => open(scene, 'green');
    await assertSceneLeavesOut(t, {}, { secret, instead, at: [[440, 330, TEAL]] });
  });

  test('whose instance has the name, but not its class', async (t) => {
    const other = { ...SHOWN_MENU, wmClass: 'Secret/Other' };
    const above = ({ painter }) => painter.window('other', other);
    await assertSceneLeavesOut(t, {}, { secret: openSecret, above, at: [[440, 330, TEAL]] });
  });
});

describe('several applications are left out', () => {
  const windows = async ({ app, painter }) => {
    await app.window('secret', MIDDLE);
    await painter.window('another', { ...MIDDLE, x: 30, y: 300, wmClass: 'another/Another' });
  };

  test('that are named together', async (t) => {
    const excluded = [7, 'Another', 'Nobody', 'Secret', 'Secret'];
    // The backdrop's process has a window that is left out: its others have classes and stay.
    await assertSceneLeavesOut(t, {}, { secret: windows }, { excluded });
  });

  test('in one picture and shown in the next', async (t) => {
    const one = ({ app }) => app.window('secret', { ...MIDDLE, x: 30, y: 20, colour: TEAL });
    const secret = async ({ app, painter }) => {
      await one({ app });
      await painter.window('another', { ...MIDDLE, wmClass: 'another/Another' });
    };
    const [reference, scene] = await Promise.all([
      takeReference(t, {}, { instead: one }),
      openScene(t, {}, { secret }),
    ]);
    await assertLeavesOut(scene, ['Another'], reference);
    assertColour(await capture(scene, ['Secret']), 300, 250, SECRET);
    await assertLeavesOut(scene, ['Another'], reference);
  });
});

describe('a window of its own inside of the window of another', () => {
  const outer = { x: 120, y: 100, width: 300, height: 260, colour: GREEN, wmClass: 'outer/Outer' };
  const inner = { ...MIDDLE, width: 140, height: 120 };

  async function behind(scene) {
    await paintBackdrop(scene);
    await scene.painter.window('outer', outer);
  }

  async function embed({ app, painter }, window) {
    await app.window('inner', window);
    await app.embed('inner', await painter.id('outer'));
  }

  test('leaves a black rectangle', async (t) => {
    const { reference } = await assertSceneLeavesOut(
      t,
      {},
      {
        behind,
        secret: (scene) => embed(scene, inner),
        instead: (scene) => embed(scene, { ...inner, colour: '#000000', wmClass: 'inner/Inner' }),
        at: [[190, 160, SECRET]],
      },
    );
    assertColour(reference, 190, 160, '#000000');
    assertColour(reference, 300, 160, GREEN);
  });

  test('leaves none where it is covered', async (t) => {
    const cover = { x: 100, y: 80, width: 100, height: 300, colour: TEAL, wmClass: 'cover/Cover' };
    await assertSceneLeavesOut(
      t,
      {},
      {
        behind,
        secret: (scene) => embed(scene, inner),
        instead: (scene) => embed(scene, { ...inner, colour: '#000000', wmClass: 'inner/Inner' }),
        above: ({ painter }) => painter.window('cover', cover),
        at: [
          [150, 160, TEAL],
          [230, 160, SECRET],
        ],
      },
    );
  });

  test('is never shown under a window manager either', async (t) => {
    const secret = (scene) => embed(scene, { ...inner, managed: false });
    const scene = await openScene(t, { manager: true }, { behind, secret });
    const picture = await capture(scene, ['Secret']);
    assertNoSecret(picture);
    assertColour(picture, 190, 160, '#000000');
    assertColour(picture, 300, 160, GREEN);
  });
});
