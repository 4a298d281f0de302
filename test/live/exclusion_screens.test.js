'use strict';

// Applications are left out on screens of any kind.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { setMonitors } = require('../support/monitors.js');
const { assertColour, decode } = require('../support/picture.js');
const {
  GREEN,
  MIDDLE,
  SECRET,
  SIZE,
  SLATE,
  TEAL,
  assertNoSecret,
  assertSame,
  assertSceneLeavesOut,
  capture,
  openScene,
  paintBackdrop,
  secretPixels,
  startScene,
  takeReference,
} = require('../support/left_out.js');

const openSecret = ({ app }) => app.window('secret', MIDDLE);

describe('behind the window that is left out is the background of the screen', () => {
  const backgrounds = {
    'that a server has from the start': async () => {},
    'of one colour': ({ painter }) => painter.background(SLATE),
    'of a tile': ({ painter }) => painter.wallpaper(SLATE, TEAL, { announced: false }),
    'of a tile that is announced': ({ painter }) => painter.wallpaper(SLATE, TEAL),
    'of one colour after a tile that is still announced': async ({ painter }) => {
      await painter.wallpaper(SLATE, TEAL);
      await painter.background(GREEN);
    },
  };
  for (const [description, behind] of Object.entries(backgrounds)) {
    test(description, async (t) => {
      await assertSceneLeavesOut(t, {}, { behind, secret: openSecret });
    });
    test(`${description}, under a window manager`, async (t) => {
      await assertSceneLeavesOut(t, { manager: true }, { behind, secret: openSecret });
    });
  }
});

describe('a window is left out of a server', () => {
  for (const [description, options] of [
    ['without shared memory', { args: ['-extension', 'MIT-SHM'] }],
    ['over the network', { transport: 'tcp' }],
    ['without shapes', { args: ['-extension', 'SHAPE'] }],
  ]) {
    test(description, async (t) => {
      await assertSceneLeavesOut(t, options, { secret: openSecret });
    });
  }

  for (const depth of [16, 30]) {
    test(`with a screen of depth ${depth}`, async (t) => {
      const options = { screen: `${SIZE.width}x${SIZE.height}x${depth}` };
      const reference = await takeReference(t, options, {});
      const scene = await startScene(t, options);
      await paintBackdrop(scene);
      await openSecret(scene);
      await scene.app.window('clear', { ...MIDDLE, x: 30, y: 30, alpha: 0.5 });
      const last = { x: 600, y: 450, width: 20, height: 10, colour: TEAL, wmClass: 'last/Last' };
      await scene.painter.window('last', last);
      const everything = await capture(scene, []);
      assertColour(everything, 300, 250, SECRET, 14);
      assert.ok(secretPixels(everything) > MIDDLE.width * MIDDLE.height, 'both windows are there');
      assertSame(await capture(scene, ['Secret']), reference);
    });
  }
});

describe('a window that spans two monitors', () => {
  const left = { x: 0, y: 0, width: 300, height: 480 };
  const right = { x: 300, y: 40, width: 340, height: 400 };

  for (const [surroundings, options] of [
    ['', {}],
    [', under a window manager', { manager: true }],
    [', under a compositing manager', { compositor: 'xcompmgr' }],
  ]) {
    test(`is left out of the pictures of both${surroundings}`, async (t) => {
      const pictures = async (scene, excluded) => {
        await setMonitors(scene.env, { left, right });
        const displays = await scene.addon.listDisplays();
        assert.equal(displays.length, 2);
        return Promise.all(displays.map(({ id }) => capturePair(scene, excluded, id)));
      };
      const capturePair = async ({ addon }, excluded, id) => {
        const whole = await addon.captureDisplay(excluded, 1, id);
        const part = await addon.captureRegion(excluded, 20, 60, 250, 300, 250, 300, 1, id);
        return [await decode(whole.base64), await decode(part.base64)];
      };
      const without = await openReference(t, options);
      const scene = await openScene(t, options, { secret: openSecret });
      const references = (await pictures(without, [])).flat();
      const found = (await pictures(scene, ['Secret'])).flat();
      for (const [index, picture] of found.entries()) {
        assertNoSecret(picture);
        assertSame(picture, references[index], { tolerance: 6 });
      }
      for (const picture of (await pictures(scene, [])).flat()) {
        assert.ok(secretPixels(picture) > 0, 'the secret is in both');
      }
    });
  }

  /** The desktop without the secret, kept. */
  async function openReference(t, options) {
    const twin = { ...MIDDLE, x: 0, y: 470, width: 4, height: 4, managed: false };
    const scene = await openScene(t, options, { secret: ({ app }) => app.window('twin', twin) });
    await scene.app.destroy('twin');
    return scene;
  }
});

describe('a window is left out of a picture', () => {
  test('that is reduced', async (t) => {
    const options = { screen: '1920x1080x24' };
    const wide = { ...MIDDLE, x: 100, y: 100, width: 1500, height: 800 };
    const parts = { secret: ({ app }) => app.window('secret', wide) };
    const reference = await startScene(t, options);
    await paintBackdrop(reference);
    const scene = await startScene(t, options);
    await paintBackdrop(scene);
    await parts.secret(scene);
    assert.ok(secretPixels(await decode((await scene.addon.captureDisplay([])).base64)) > 0);
    const shot = await scene.addon.captureDisplay(['Secret'], 0.8);
    assert.deepEqual(shot, await reference.addon.captureDisplay([], 0.8));
  });

  test('of a part of the screen, enlarged and beyond its edges', async (t) => {
    const reference = await startScene(t, {});
    await paintBackdrop(reference);
    const scene = await startScene(t, {});
    await paintBackdrop(scene);
    await openSecret(scene);
    for (const area of [
      [210, 150, 40, 30, 400, 300],
      [-100, -50, 500, 400, 500, 400],
      [400, 300, 400, 300, 200, 150],
      [300, 250, 1, 1, 16, 16],
      [250.5, 199.5, 100.25, 80.75, 300, 240],
    ]) {
      const { base64 } = await scene.addon.captureRegion(['Secret'], ...area, 1);
      assert.equal(base64, (await reference.addon.captureRegion([], ...area, 1)).base64, `${area}`);
    }
    const shown = await scene.addon.captureRegion([], 210, 150, 40, 30, 400, 300, 1);
    assertColour(await decode(shown.base64), 200, 150, SECRET);
  });
});
