'use strict';

// Clicks, presses and moves, as a page and the server see them.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { checksOn, startInputDesktop } = require('../support/input_desktop.js');
const { KEY } = require('../support/keyboard.js');
const { setMonitors } = require('../support/monitors.js');
const { startPage } = require('../support/receivers.js');
const { until } = require('../support/until.js');

/** An event in a few words: what, by which button or key, with which modifiers held. */
function inWords({ type, button, code, ctrlKey, shiftKey, altKey, metaKey, detail }) {
  const held = [ctrlKey && 'ctrl', shiftKey && 'shift', altKey && 'alt', metaKey && 'meta'];
  const what = code ?? `${button} (${detail})`;
  return [type, what, ...held.filter(Boolean)].join(' ');
}

/** What a click of a button is, in words. */
const clickOf = (button, detail, held = '') =>
  ['mousedown', 'mouseup', 'click'].map((type) => `${type} ${button} (${detail})${held}`);

const CLICKS = ['mousedown', 'mouseup', 'click', 'dblclick', 'auxclick', 'contextmenu'];
const KEYS = ['keydown', 'keyup'];

async function startScene(t, manager) {
  const desktop = await startInputDesktop(t, { manager });
  const page = await startPage(t, desktop);
  await page.focus(null);
  const [x, y] = await page.centre('#field');
  const check = checksOn(t, desktop, page);
  /** The events of the types that the page has seen, in words. */
  const seen = async (...types) => {
    await page.settle();
    return page.since(...types).map(inWords);
  };
  return { ...desktop, page, x, y, check, seen };
}

for (const manager of [true, false]) {
  const place = manager ? 'under a window manager' : 'without a window manager';

  test(`a page ${place} sees`, async (t) => {
    const { addon, keyboard, page, whileHeld, x, y, check, seen } = await startScene(t, manager);

    await check('a click where it was', async () => {
      assert.equal(await addon.mouseClick('left', x + 40, y - 30), true);
      assert.deepEqual(await seen(...CLICKS, ...KEYS), clickOf(0, 1));
      for (const event of page.since(...CLICKS)) {
        assert.deepEqual([event.screenX, event.screenY], [x + 40, y - 30]);
        assert.equal(event.target, 'field');
      }
    });

    for (const [name, button, ends] of [
      ['left', 0, ['click']],
      ['right', 2, ['auxclick', 'contextmenu']],
      ['RIGHT', 2, ['auxclick', 'contextmenu']],
      ['1', 2, ['auxclick', 'contextmenu']],
      ['middle', 1, ['auxclick']],
      ['2', 1, ['auxclick']],
      ['no such button', 0, ['click']],
    ]) {
      await check(`button ${button} for '${name}'`, async () => {
        await addon.mouseClick(name, x, y);
        await page.settle();
        const events = page.since(...CLICKS);
        const types = ['mousedown', 'mouseup', ...ends].sort();
        assert.deepEqual(events.map(({ type }) => type).sort(), types);
        for (const event of events) assert.equal(event.button, button, event.type);
      });
    }

    for (const count of [2, 3]) {
      await check(`${count} clicks as one gesture`, async () => {
        await addon.mouseClick('left', x - 10 * count, y, count);
        const expected = [1, 2, 3].slice(0, count).flatMap((detail) => clickOf(0, detail));
        expected.splice(6, 0, 'dblclick 0 (2)');
        assert.deepEqual(await seen(...CLICKS), expected);
      });
    }

    await check('the clicks of two calls as two', async () => {
      await addon.mouseClick('left', x + 100, y);
      await addon.mouseClick('left', x - 100, y);
      assert.deepEqual(await seen(...CLICKS), [...clickOf(0, 1), ...clickOf(0, 1)]);
    });

    for (const count of [0, -1]) {
      await check(`only a move when the count is ${count}`, async () => {
        await addon.mouseClick('left', x + 7, y + 7, count);
        assert.deepEqual(await seen(...CLICKS), []);
        assert.deepEqual((await keyboard.state()).pointer, [x + 7, y + 7]);
      });
    }

    for (const [modifiers, codes, held] of [
      ['shift', ['ShiftLeft'], ' shift'],
      ['Ctrl', ['ControlLeft'], ' ctrl'],
      ['ctrl+shift', ['ControlLeft', 'ShiftLeft'], ' ctrl shift'],
      // A window manager takes these for itself.
      ...(manager ? [] : [['alt', ['AltLeft'], ' alt']]),
      ...(manager ? [] : [['cmd+option', ['AltLeft', 'MetaLeft'], ' alt meta']]),
    ]) {
      await check(`two clicks with ${modifiers}, which goes down and up once`, async () => {
        await addon.mouseClick('left', x + 20, y + 20, 2, modifiers);
        const words = await seen(...CLICKS, ...KEYS);
        const downs = words.splice(0, codes.length);
        const ups = words.splice(-codes.length);
        const codesOf = (list) => list.map((word) => word.split(' ').slice(0, 2).join(' ')).sort();
        assert.deepEqual(codesOf(downs), codes.map((code) => `keydown ${code}`));
        assert.deepEqual(codesOf(ups), codes.map((code) => `keyup ${code}`));
        const clicks = [...clickOf(0, 1, held), ...clickOf(0, 2, held)];
        assert.deepEqual(words, [...clicks, `dblclick 0 (2)${held}`]);
      });
    }

    await check('no modifier for names that there are not', async () => {
      await addon.mouseClick('left', x, y + 40, 1, ' shift+hyper++');
      assert.deepEqual(await seen(...CLICKS, ...KEYS), clickOf(0, 1));
    });

    const title = 'a click without the Shift that the user holds, and his Shift after it';
    const userActs = { userActs: true };
    await check(title, userActs, async () => {
      await whileHeld(KEY.shift, () => addon.mouseClick('left', x, y - 60));
      assert.deepEqual(await seen(...CLICKS), clickOf(0, 1));
    });

    await check('a button held from one call to another', async () => {
      await addon.mouseMove(x, y);
      assert.equal(await addon.mouseDown('left', x, y), true);
      assert.deepEqual(await seen(...CLICKS), ['mousedown 0 (1)']);
      await addon.mouseMove(x + 60, y + 60);
      const hasMoved = () => page.since('mousemove').some(({ screenX }) => screenX === x + 60);
      await until(hasMoved, 'the page sees the move');
      assert.equal(page.since('mousemove').at(-1).buttons, 1);
      assert.equal(await addon.mouseUp('left', x + 60, y + 60), true);
      assert.deepEqual(await seen('mouseup'), ['mouseup 0 (1)']);
    });

    await check('two buttons held at once', async () => {
      await addon.mouseMove(x, y);
      await addon.mouseDown('left', x, y);
      await addon.mouseDown('middle', x, y);
      await page.settle();
      assert.equal(page.since('mousedown').at(-1).buttons, 1 + 4);
      await addon.mouseUp('left', x, y);
      await addon.mouseUp('middle', x, y);
      await page.settle();
      assert.equal(page.since('mouseup').at(-1).buttons, 0);
    });
  });
}

describe('mouseMove', () => {
  for (const [x, y, ...place] of [
    [100, 200, 100, 200],
    [100.4, 200.6, 100, 201],
    [100.5, 200.49, 101, 200],
    [-300, 20_000, 0, 799],
    [1e300, -Infinity, 1279, 0],
  ]) {
    test(`to ${x}, ${y} puts the pointer at ${place.join(', ')}`, async (t) => {
      const { addon, keyboard, leavesNoTrace } = await startInputDesktop(t);
      await leavesNoTrace(async () => assert.equal(await addon.mouseMove(x, y), true));
      assert.deepEqual((await keyboard.state()).pointer, place);
    });
  }

  test('to what is not a number leaves the pointer where it is', async (t) => {
    const { addon, keyboard, painter } = await startInputDesktop(t);
    await painter.pointer(70, 80);
    assert.equal(await addon.mouseMove(NaN, 10), true);
    assert.deepEqual((await keyboard.state()).pointer, [70, 80]);
  });

  test('counts from the primary display, and reaches those beside it', async (t) => {
    const { addon, env, keyboard } = await startInputDesktop(t, { screen: '1200x900x24' });
    await setMonitors(env, {
      middle: { x: 400, y: 300, width: 400, height: 300 },
      left: { x: 0, y: 350, width: 400, height: 200 },
      lower: { x: 800, y: 620, width: 400, height: 280 },
    });
    for (const [x, y, ...place] of [
      [0, 0, 400, 300],
      [-390, 60, 10, 360],
      [-10.25, -1.75, 390, 298],
      [410, 330, 810, 630],
    ]) {
      await addon.mouseMove(x, y);
      assert.deepEqual((await keyboard.state()).pointer, place);
      const [left, top] = [400, 300];
      const position = { x: place[0] - left, y: place[1] - top };
      assert.deepEqual(await addon.getCursorPosition(), position);
    }
  });
});

test('a click on a display left of the primary one comes to the window there', async (t) => {
  const desktop = await startInputDesktop(t, { screen: '1600x800x24' });
  const { addon, env, leavesNoTrace } = desktop;
  await setMonitors(env, {
    right: { x: 800, y: 100, width: 800, height: 700 },
    left: { x: 0, y: 0, width: 800, height: 800 },
  });
  const page = await startPage(t, desktop);
  await page.focus(null);
  const [x, y] = await page.centre('#field');
  await leavesNoTrace(async () => {
    await page.forget();
    await addon.mouseClick('left', x - 800, y - 100);
    await page.settle();
    const [press] = page.since('mousedown');
    const middle = await page.ask(`(() => {
      const { x, y, width, height } = document.querySelector('#field').getBoundingClientRect();
      return [x + width / 2, y + height / 2];
    })()`);
    assert.deepEqual([press.clientX, press.clientY], middle);
  });
});
