'use strict';

const stacks = new WeakMap();

/** Runs `action` when the test of `t` has ended, passed or failed; the last one given first. */
function atEnd(t, action) {
  if (!stacks.has(t)) {
    const stack = [];
    stacks.set(t, stack);
    t.after(async () => {
      while (stack.length > 0) await stack.pop()();
    });
  }
  stacks.get(t).push(action);
}

module.exports = { atEnd };
