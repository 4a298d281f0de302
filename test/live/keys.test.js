'use strict';

// Keys and chords, as a page sees them: which key, with which modifiers, how often and how long.
const assert = require('node:assert/strict');
const { test } = require('node:test');
const { checksOn, startInputDesktop } = require('../support/input_desktop.js');
const { KEY, MASK } = require('../support/keyboard.js');
const { startPage } = require('../support/receivers.js');
const { until } = require('../support/until.js');

const letters = [...'abcdefghijklmnopqrstuvwxyz'];
const digits = [...'1234567890'];

const keypad = {
  numpadenter: ['NumpadEnter', 'Enter'],
  numpadclear: undefined, // the us have Num Lock in its place, which is another key
  numpadequals: ['NumpadEqual', '='],
  add: ['NumpadAdd', '+'],
  subtract: ['NumpadSubtract', '-'],
  multiply: ['NumpadMultiply', '*'],
  divide: ['NumpadDivide', '/'],
  decimal: ['NumpadDecimal', '.'],
};

/** What a page calls each key that has a name: its place on the keyboard, and what it gives. */
const names = {
  ...Object.fromEntries(letters.map((name) => [name, [`Key${name.toUpperCase()}`, name]])),
  ...Object.fromEntries(digits.map((name) => [name, [`Digit${name}`, name]])),
  ...Object.fromEntries(digits.map((name) => [`numpad${name}`, [`Numpad${name}`, name]])),
  ...keypad,
  '-': ['Minus', '-'],
  '=': ['Equal', '='],
  '[': ['BracketLeft', '['],
  ']': ['BracketRight', ']'],
  '\\': ['Backslash', '\\'],
  ';': ['Semicolon', ';'],
  "'": ['Quote', "'"],
  ',': ['Comma', ','],
  '.': ['Period', '.'],
  '/': ['Slash', '/'],
  '`': ['Backquote', '`'],
  return: ['Enter', 'Enter'],
  enter: ['Enter', 'Enter'],
  tab: ['Tab', 'Tab'],
  space: ['Space', ' '],
  backspace: ['Backspace', 'Backspace'],
  delete: ['Backspace', 'Backspace'],
  escape: ['Escape', 'Escape'],
  esc: ['Escape', 'Escape'],
  forwarddelete: ['Delete', 'Delete'],
  home: ['Home', 'Home'],
  end: ['End', 'End'],
  pageup: ['PageUp', 'PageUp'],
  pagedown: ['PageDown', 'PageDown'],
  help: ['Help', 'Help'],
  left: ['ArrowLeft', 'ArrowLeft'],
  leftarrow: ['ArrowLeft', 'ArrowLeft'],
  right: ['ArrowRight', 'ArrowRight'],
  rightarrow: ['ArrowRight', 'ArrowRight'],
  down: ['ArrowDown', 'ArrowDown'],
  downarrow: ['ArrowDown', 'ArrowDown'],
  up: ['ArrowUp', 'ArrowUp'],
  uparrow: ['ArrowUp', 'ArrowUp'],
  capslock: ['CapsLock', 'CapsLock'],
  shift: ['ShiftLeft', 'Shift'],
  lshift: ['ShiftLeft', 'Shift'],
  rshift: ['ShiftRight', 'Shift'],
  control: ['ControlLeft', 'Control'],
  ctrl: ['ControlLeft', 'Control'],
  lctrl: ['ControlLeft', 'Control'],
  rctrl: ['ControlRight', 'Control'],
  option: ['AltLeft', 'Alt'],
  alt: ['AltLeft', 'Alt'],
  loption: ['AltLeft', 'Alt'],
  roption: ['AltRight', 'Alt'],
  command: ['MetaLeft', 'Meta'],
  cmd: ['MetaLeft', 'Meta'],
  meta: ['MetaLeft', 'Meta'],
  super: ['MetaLeft', 'Meta'],
  lcommand: ['MetaLeft', 'Meta'],
  rcommand: ['MetaRight', 'Meta'],
  fn: undefined, // there is no such key
  function: undefined,
};
for (let number = 1; number <= 20; ++number) names[`f${number}`] = [`F${number}`, `F${number}`];
// The us have nothing on these.
names.f19 = ['F19', '\0'];
names.f20 = ['F20', '\0'];

const MODIFIERS = ['ctrlKey', 'shiftKey', 'altKey', 'metaKey'];

/** 'keydown KeyA a ctrl', of an event. */
function inWords(event) {
  const held = MODIFIERS.filter((name) => event[name]).map((name) => name.slice(0, -3));
  return [event.type, event.code, event.key, ...held].join(' ');
}

async function startScene(t, options) {
  const desktop = await startInputDesktop(t, options);
  const page = await startPage(t, desktop);
  await page.focus(null);
  const check = checksOn(t, desktop, page);
  /** What the page has seen of the keyboard. */
  const seen = async () => {
    await page.settle();
    return page.since('keydown', 'keyup').map(inWords);
  };
  return { ...desktop, page, check, seen };
}

test('keyPress of each name presses that key on a keyboard of the us', async (t) => {
  assert.equal(Object.keys(names).length, 127);
  const { addon, check, page } = await startScene(t);
  for (const [name, wanted] of Object.entries(names)) {
    await check(name, async () => {
      assert.equal(await addon.keyPress(name), true);
      const isLock = name === 'capslock';
      if (isLock) await addon.keyPress(name); // unlocks it
      await page.settle();
      const events = page.since('keydown', 'keyup');
      const words = events.map(({ type, code, key }) => [type, code, key].join(' '));
      const once = wanted ? ['keydown', 'keyup'].map((type) => [type, ...wanted].join(' ')) : [];
      assert.deepEqual(words, isLock ? [...once, ...once] : once);
      for (const event of events) assert.equal(event.repeat, false);
    });
  }
});

for (const manager of [true, false]) {
  const place = manager ? 'under a window manager' : 'without a window manager';

  test(`a page ${place} sees`, async (t) => {
    const { addon, check, keyboard, page, seen, whileHeld } = await startScene(t, { manager });

    for (const [chord, ...words] of [
      ['a', 'keydown KeyA a', 'keyup KeyA a'],
      ['A', 'keydown KeyA a', 'keyup KeyA a'],
      [
        'ctrl+a',
        ...['keydown ControlLeft Control ctrl', 'keydown KeyA a ctrl'],
        ...['keyup KeyA a ctrl', 'keyup ControlLeft Control'],
      ],
      [
        'Shift + T',
        ...['keydown ShiftLeft Shift shift', 'keydown KeyT T shift'],
        ...['keyup KeyT T shift', 'keyup ShiftLeft Shift'],
      ],
      [
        'shift+1',
        ...['keydown ShiftLeft Shift shift', 'keydown Digit1 ! shift'],
        ...['keyup Digit1 ! shift', 'keyup ShiftLeft Shift'],
      ],
      [
        'ctrl+hyper+f5',
        ...['keydown ControlLeft Control ctrl', 'keydown F5 F5 ctrl'],
        ...['keyup F5 F5 ctrl', 'keyup ControlLeft Control'],
      ],
      ['page up', 'keydown PageUp PageUp', 'keyup PageUp PageUp'],
      ['a+b', 'keydown KeyB b', 'keyup KeyB b'],
      ['fn+left', 'keydown ArrowLeft ArrowLeft', 'keyup ArrowLeft ArrowLeft'],
    ]) {
      await check(`the chord '${chord}'`, async () => {
        await addon.keyPress(chord);
        assert.deepEqual(await seen(), words);
      });
    }

    await check('each modifier of a chord go down and up once', async () => {
      await addon.keyPress('cmd+ctrl+shift+t', 3);
      const words = await seen();
      const count = (start) => words.filter((word) => word.startsWith(start)).length;
      for (const code of ['MetaLeft', 'ControlLeft', 'ShiftLeft']) {
        assert.equal(count(`keydown ${code}`), 1, code);
        assert.equal(count(`keyup ${code}`), 1, code);
      }
      const taps = words.filter((word) => word.includes('KeyT'));
      const tap = ['keydown KeyT T ctrl shift meta', 'keyup KeyT T ctrl shift meta'];
      assert.deepEqual(taps, [...tap, ...tap, ...tap]);
    });

    for (const [repeat, count] of [
      [3, 3],
      [0, 1],
      [-5, 1],
      [NaN, 1],
      ['3', 1],
      [2.9, 2],
    ]) {
      await check(`${count} taps for ${JSON.stringify(repeat)}`, async () => {
        assert.equal(await addon.keyPress('x', repeat), true);
        const taps = Array(count).fill(['keydown KeyX x', 'keyup KeyX x']).flat();
        assert.deepEqual(await seen(), taps);
      });
    }

    await check('a held key for as long as it is held', async () => {
      const start = performance.now();
      assert.equal(await addon.keyHold('shift', 300), true);
      assert.ok(performance.now() - start >= 300, 'it takes its time');
      assert.deepEqual(await seen(), ['keydown ShiftLeft Shift shift', 'keyup ShiftLeft Shift']);
      const [down, up] = page.since('keydown', 'keyup');
      assert.ok(up.time - down.time >= 290, `${up.time - down.time} ms`);
    });

    await check('a held key repeat, as keys do', async () => {
      await addon.keyHold('ctrl+g', 1200);
      await page.settle();
      const downs = page.since('keydown').filter(({ code }) => code === 'KeyG');
      const ups = page.since('keyup').filter(({ code }) => code === 'KeyG');
      assert.equal(ups.length, 1);
      assert.ok(downs.length > 2, `${downs.length} times`);
      assert.equal(downs[0].repeat, false);
      for (const { repeat } of downs.slice(1)) assert.equal(repeat, true);
      for (const { ctrlKey } of downs) assert.equal(ctrlKey, true);
    });

    for (const duration of [0, -10]) {
      await check(`a tap for a hold of ${duration} ms`, async () => {
        await addon.keyHold('space', duration);
        assert.deepEqual(await seen(), ['keydown Space  ', 'keyup Space  ']);
      });
    }

    const userActs = { userActs: true };
    const withControl = ['keydown KeyB b ctrl', 'keyup KeyB b ctrl'];
    const seenOfB = async () => (await seen()).filter((words) => words.includes('KeyB'));

    await check('a chord without the Shift that the user holds on', userActs, async () => {
      await whileHeld(KEY.shift, () => addon.keyPress('ctrl+b'));
      assert.deepEqual(await seenOfB(), withControl);
    });

    await check('the next chord after the user has let go in one', userActs, async () => {
      await keyboard.press(KEY.control);
      const holding = addon.keyHold('g', 400);
      const isDown = async () => (await keyboard.state()).keys.includes(KEY.g);
      await until(isDown, 'the key is held');
      await keyboard.release(KEY.control);
      await holding;
      await addon.keyPress('ctrl+b');
      assert.deepEqual(await seenOfB(), withControl);
    });

    await check('small letters with Caps Lock on, which stays on', async () => {
      await keyboard.lock(MASK.lock);
      await addon.keyPress('q');
      assert.equal((await keyboard.state()).locked, MASK.lock);
      await keyboard.lock(0);
      assert.deepEqual(await seen(), ['keydown KeyQ q', 'keyup KeyQ q']);
    });
  });
}

test('a key is the one with its character, else the one in its place', async (t) => {
  const { addon, keyboard, page, leavesNoTrace, setLayouts } = await startScene(t);
  for (const [layout, chord, code, key] of [
    ['us', 'ctrl+z', 'KeyZ', 'z'],
    ['de', 'ctrl+z', 'KeyY', 'z'],
    ['fr', 'ctrl+a', 'KeyQ', 'a'],
    ['ru', 'ctrl+a', 'KeyA', 'ф'],
    ['ru', 'ctrl+c', 'KeyC', 'с'],
    ['us,ru', 'ctrl+v', 'KeyV', 'v'],
  ]) {
    await t.test(`${chord} with ${layout}`, async () => {
      await setLayouts(layout);
      await leavesNoTrace(async () => {
        await page.forget();
        await addon.keyPress(chord);
        await page.settle();
        const [, down] = page.since('keydown');
        assert.deepEqual([down.code, down.key, down.ctrlKey], [code, key, true]);
      });
    });
  }

  await t.test('ctrl+v with the second of two layouts', async () => {
    await setLayouts('us,ru');
    await keyboard.chooseLayout(1);
    await leavesNoTrace(async () => {
      await page.forget();
      await addon.keyPress('ctrl+v');
      await page.settle();
      assert.equal(page.since('keydown')[1].code, 'KeyV');
    });
    await keyboard.chooseLayout(0);
  });
});
