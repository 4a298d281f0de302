'use strict';

const assert = require('node:assert/strict');
const { startDesktop } = require('./desktop.js');
const { startKeyboard } = require('./keyboard.js');
const { until } = require('./until.js');

const SETTLE_MS = 3000;

/** The keys that gave something before and do not give the same now. */
function changedKeys(before, after) {
  return [...before].filter(([keycode, levels]) => after.get(keycode) !== levels);
}

/**
 * A private desktop with a keyboard. `leavesNoTrace(action)` runs `action` and fails when it leaves
 * a key or a button down, a modifier or a layout other than before, or a key of the layout that no
 * longer gives what it gave.
 */
async function startInputDesktop(t, options = {}) {
  const desktop = await startDesktop(t, options);
  const keyboard = startKeyboard(t, desktop.env);
  return {
    ...desktop,
    keyboard,
    async leavesNoTrace(action) {
      const before = { ...(await keyboard.state()), pointer: undefined };
      const layout = await keyboard.layout();
      const result = await action();
      let after;
      const isAsBefore = async () => {
        after = { ...(await keyboard.state()), pointer: undefined };
        return JSON.stringify(after) === JSON.stringify(before);
      };
      // What other programs did last may still be on its way.
      await until(isAsBefore, 'nothing is held', { timeoutMs: SETTLE_MS }).catch(() => {});
      assert.deepEqual(after, before, 'what is held and locked');
      assert.deepEqual(changedKeys(layout, await keyboard.layout()), [], 'keys that have changed');
      return result;
    },
  };
}

module.exports = { startInputDesktop };
