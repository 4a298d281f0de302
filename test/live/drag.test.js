'use strict';

// Drags: things dropped on a page, text selected, a window moved.
const assert = require('node:assert/strict');
const { test } = require('node:test');
const { isDeepStrictEqual } = require('node:util');
const { checksOn, startInputDesktop } = require('../support/input_desktop.js');
const { setMonitors } = require('../support/monitors.js');
const { startPage } = require('../support/receivers.js');
const { until } = require('../support/until.js');

const DRAG_MS = 250;

const typesOf = (events) => events.map(({ type }) => type);

for (const manager of [true, false]) {
  const place = manager ? 'under a window manager' : 'without a window manager';

  test(`on a page ${place}, mouseDrag`, async (t) => {
    const desktop = await startInputDesktop(t, { manager });
    const { addon, keyboard } = desktop;
    const page = await startPage(t, desktop);
    await page.focus(null);
    const card = await page.centre('#card');
    const bin = await page.centre('#bin');
    const check = checksOn(t, desktop, page);

    await check('drops a thing where it ends', async () => {
      const start = performance.now();
      assert.equal(await addon.mouseDrag(...card, ...bin), true);
      assert.ok(performance.now() - start >= DRAG_MS, 'it takes its time');
      await until(() => page.since('dragend').length > 0, 'the drag is over');
      const events = page.since('mousedown', 'dragstart', 'drop', 'dragend', 'mouseup', 'click');
      assert.deepEqual(typesOf(events), ['mousedown', 'dragstart', 'drop', 'dragend']);
      const [press, , drop] = events;
      assert.deepEqual([press.screenX, press.screenY, press.target], [...card, 'card']);
      assert.deepEqual([drop.screenX, drop.screenY, drop.target], [...bin, 'bin']);
      assert.equal(await page.ask("document.querySelector('#bin').textContent"), 'card');
      assert.deepEqual((await keyboard.state()).pointer, bin);
    });

    await check('selects text from its start to its end', async () => {
      const box = "document.querySelector('#words').getBoundingClientRect()";
      const [left, top, width, height] = await page.ask(
        `[${box}.left, ${box}.top, ${box}.width, ${box}.height]`,
      );
      const character = width / 'one two three'.length;
      const at = (index) => page.onScreen(left + index * character, top + height / 2);
      await addon.mouseDrag(...(await at(4)), ...(await at(7)));
      await page.settle();
      assert.equal(await page.ask('String(getSelection())'), 'two');
      await addon.mouseDrag(...(await at(12.9)), ...(await at(8)));
      await page.settle();
      assert.equal(await page.ask('String(getSelection())'), 'three');
    });

    for (const [button, number, mask] of [
      ['right', 2, 2],
      ['Middle', 1, 4],
      ['left', 0, 1],
      [7, 0, 1],
    ]) {
      await check(`moves with button ${number} held for ${button}`, async () => {
        const [x, y] = await page.centre('#field');
        await addon.mouseDrag(x - 100, y - 50, x + 100, y + 50, button);
        await page.settle();
        const [press] = page.since('mousedown');
        const [release] = page.since('mouseup');
        assert.deepEqual([press.button, release.button], [number, number]);
        assert.deepEqual([press.screenX, press.screenY], [x - 100, y - 50]);
        assert.deepEqual([release.screenX, release.screenY], [x + 100, y + 50]);
        const between = page
          .since('mousemove')
          .filter(({ seq }) => seq > press.seq && seq < release.seq);
        assert.ok(between.length >= 3, `only ${between.length} moves`);
        for (const { screenX, screenY, buttons } of between) {
          assert.equal(buttons, mask);
          assert.ok(screenX > x - 100 && screenX <= x + 100, `${screenX} is on the way`);
          // On a straight line, but for the rounding to a pixel.
          assert.ok(Math.abs(screenY - y - (screenX - x) / 2) <= 1, 'it is straight');
        }
      });
    }

    await check('presses and releases where it starts when it ends there, too', async () => {
      const [x, y] = await page.centre('#field');
      await addon.mouseDrag(x, y, x, y);
      await page.settle();
      const types = typesOf(page.since('mousedown', 'mouseup', 'click'));
      assert.deepEqual(types, ['mousedown', 'mouseup', 'click']);
    });
  });
}

/** Where the first rectangle of a colour (0xrrggbb) begins on the screen. */
async function cornerOf(painter, colour) {
  const { rgb, width } = await painter.grab();
  const wanted = Buffer.from([colour >> 16, (colour >> 8) & 0xff, colour & 0xff]);
  let byte = rgb.indexOf(wanted);
  while (byte % 3 > 0) byte = rgb.indexOf(wanted, byte + 1);
  return byte < 0 ? undefined : [(byte / 3) % width, Math.floor(byte / 3 / width)];
}

test('a window moves as far as its title is dragged, to another display', async (t) => {
  const desktop = await startInputDesktop(t, { manager: true });
  const { addon, env, leavesNoTrace, painter } = desktop;
  await setMonitors(env, {
    right: { x: 640, y: 0, width: 640, height: 800 },
    left: { x: 0, y: 0, width: 640, height: 800 },
  });
  const place = { x: 200, y: 300, width: 200, height: 100 };
  await painter.window('dragged', { ...place, colour: '#c02020' });
  const isAt = async (...corner) =>
    isDeepStrictEqual(await cornerOf(painter, 0xc02020), corner);
  await until(() => isAt(200, 300), 'the window is where it wants to be');
  await leavesNoTrace(async () => {
    const title = [200 + 100 - 640, 300 - 8];
    await addon.mouseDrag(...title, title[0] + 600, title[1] + 150);
    await until(() => isAt(800, 450), 'the window is where it was dragged');
  });
});
