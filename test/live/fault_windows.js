'use strict';

// What the fault plans ask about applications and windows, and what may come of it.

const QUESTION_BOUND_MS = 3000;

// A first look takes more than a hundred answers, most of which tell the same of other windows.
const SPOILT_ALL = 8;
const SPOILT_EVERY = 7;

/** A question whose answer is right or, when it cannot be known, `nothing`. */
function question(name, call, nothing) {
  return {
    name,
    call,
    boundMs: QUESTION_BOUND_MS,
    skips: (nth) => nth > SPOILT_ALL && nth % SPOILT_EVERY !== 0,
    values: async (scene) => [await call(scene.addon), nothing],
    isDocumented: () => false,
  };
}

const windowFunctions = [
  question('getWindowList', (addon) => addon.getWindowList(), []),
  question('getFrontmostApp', (addon) => addon.getFrontmostApp(), null),
];

module.exports = { windowFunctions };
