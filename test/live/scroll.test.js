'use strict';

// The wheel, as a page sees it: what turns, which way, how far, and where.
const assert = require('node:assert/strict');
const { test } = require('node:test');
const { checksOn, startInputDesktop } = require('../support/input_desktop.js');
const { KEY } = require('../support/keyboard.js');
const { startPage } = require('../support/receivers.js');
const { until } = require('../support/until.js');

const sum = (numbers) => numbers.reduce((total, number) => total + number, 0);

/** How far the wheel has turned for a page, right and down. */
function distance(page) {
  const events = page.since('wheel');
  return [sum(events.map(({ deltaX }) => deltaX)), sum(events.map(({ deltaY }) => deltaY))];
}

for (const manager of [true, false]) {
  const place = manager ? 'under a window manager' : 'without a window manager';

  test(`on a page ${place}, scroll`, async (t) => {
    const desktop = await startInputDesktop(t, { manager });
    const { addon, keyboard, whileHeld } = desktop;
    const page = await startPage(t, desktop);
    await page.focus(null);
    const [x, y] = await page.centre('#field');
    await addon.mouseMove(x, y);
    /** Resolves when the page has been scrolled so far, and no further. */
    const scrolls = async (right, down) => {
      const isThere = () => {
        const [dx, dy] = distance(page);
        return Math.abs(dx) >= Math.abs(right) && Math.abs(dy) >= Math.abs(down);
      };
      await until(isThere, `the page is scrolled by ${right}, ${down}`);
      await page.settle();
      assert.deepEqual(distance(page), [right, down]);
    };
    const check = checksOn(t, desktop, page);

    // How far the browser goes for a line is its own business.
    await addon.scroll(0, -1);
    await until(() => page.since('wheel').length > 0, 'the page sees the wheel');
    const [, line] = distance(page);
    assert.ok(line > 0, 'a negative deltaY goes down');

    for (const [title, deltaX, deltaY, right, down] of [
      ['down for a negative deltaY', 0, -3, 0, 3],
      ['up for a positive deltaY', 0, 2, 0, -2],
      ['left for a positive deltaX', 2, 0, -2, 0],
      ['right for a negative deltaX', -4, 0, 4, 0],
      ['both ways at once', -1, -2, 1, 2],
      ['whole lines only', 1.9, -2.9, -1, 2],
    ]) {
      await check(`goes ${title}`, async () => {
        assert.equal(await addon.scroll(deltaX, deltaY), true);
        await scrolls(right * line, down * line);
        for (const { screenX, screenY } of page.since('wheel')) {
          assert.deepEqual([screenX, screenY], [x, y], 'where the pointer was');
        }
      });
    }

    for (const deltaY of [1000, -1000]) {
      await check(`goes all of ${deltaY} lines`, async () => {
        await addon.scroll(0, deltaY);
        await scrolls(0, -deltaY * line);
      });
    }

    for (const deltas of [
      [0, 0],
      [0.5, -0.9],
    ]) {
      await check(`by ${deltas.join(', ')} does nothing`, async () => {
        assert.equal(await addon.scroll(...deltas), true);
        await page.settle();
        assert.deepEqual(page.since('wheel'), []);
      });
    }

    await check('goes where it is told to', async () => {
      await addon.scroll(0, -1, x - 120, y + 40);
      await scrolls(0, line);
      const [{ screenX, screenY }] = page.since('wheel');
      assert.deepEqual([screenX, screenY], [x - 120, y + 40]);
      assert.deepEqual((await keyboard.state()).pointer, [x - 120, y + 40]);
    });

    for (const rest of [[x + 50], [x + 50, String(y)], [undefined, y]]) {
      const words = rest.map((value) => typeof value).join(', ');
      await check(`stays where the pointer is when the place is ${words}`, async () => {
        await addon.mouseMove(x, y);
        await addon.scroll(0, 1, ...rest);
        await scrolls(0, -line);
        assert.deepEqual((await keyboard.state()).pointer, [x, y]);
      });
    }

    const title = 'is without the Control that the user holds, who holds it on';
    await check(title, { userActs: true }, async () => {
      await whileHeld(KEY.control, () => addon.scroll(0, -1));
      await scrolls(0, line);
      assert.equal(page.since('wheel')[0].ctrlKey, false);
    });
  });
}
