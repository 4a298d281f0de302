'use strict';

const assert = require('node:assert/strict');
const { isDeepStrictEqual } = require('node:util');
const { startDesktop } = require('./desktop.js');
const { startKeyboard } = require('./keyboard.js');
const { until } = require('./until.js');

const SETTLE_MS = 3000;

/** The keys of the layout that did not give then what they give now. */
function changedKeys(before, after, ofLayout) {
  return [...ofLayout].filter((keycode) => after.get(keycode) !== before.get(keycode));
}

/**
 * A private desktop with a keyboard. `leavesNoTrace(action)` runs `action` and fails when it leaves
 * a key or a button down, a modifier or a layout other than before, or a key of the layout that no
 * longer gives what it gave. `userActs`: the user holds a key meanwhile, which may then be left
 * down on the keyboard of programs, to which nobody listens alone.
 */
async function startInputDesktop(t, options = {}) {
  const desktop = await startDesktop(t, options);
  const keyboard = startKeyboard(t, desktop.env);
  // The others are spare, and may be lent to characters now or later.
  let ofLayout = [...(await keyboard.layout()).keys()];

  const leavesNoTrace = async (action, { userActs = false } = {}) => {
    const { pointer, elsewhere, ...before } = await keyboard.state();
    const known = new Set(elsewhere);
    const expected = { ...before, elsewhere: [] };
    const layout = await keyboard.layout();
    const result = await action();
    let after;
    const isAsBefore = async () => {
      const { pointer: _, elsewhere: held, ...state } = await keyboard.state();
      after = { ...state, elsewhere: userActs ? [] : held.filter((pair) => !known.has(pair)) };
      return isDeepStrictEqual(after, expected);
    };
    // What other programs did last may still be on its way.
    await until(isAsBefore, 'nothing is held', { timeoutMs: SETTLE_MS }).catch(() => {});
    assert.deepEqual(after, expected, 'what is held and locked');
    const changed = changedKeys(layout, await keyboard.layout(), ofLayout);
    assert.deepEqual(changed, [], 'keys that give something else than before');
    return result;
  };

  return {
    ...desktop,
    keyboard,
    leavesNoTrace,
    /** Sets the keyboard to 'us', or to several layouts as in 'us,ru', of which the first is on. */
    async setLayouts(layouts) {
      await keyboard.setLayouts(layouts);
      ofLayout = [...(await keyboard.layout()).keys()];
    },
    /** Runs `action` while the user holds a key; fails when he does not after it. */
    async whileHeld(keycode, action) {
      await keyboard.press(keycode);
      try {
        return await leavesNoTrace(action, { userActs: true });
      } finally {
        await keyboard.release(keycode);
      }
    },
  };
}

/**
 * Parts of a test `t` that use one page after the other: check(title, action), or with options of
 * leavesNoTrace() between the two. The page has forgotten its events when `action` begins.
 */
function checksOn(t, { leavesNoTrace }, page) {
  return (title, ...rest) => {
    const action = rest.pop();
    const [options] = rest;
    const run = async () => {
      await page.forget();
      await action();
    };
    return t.test(title, () => leavesNoTrace(run, options));
  };
}

module.exports = { checksOn, startInputDesktop };
