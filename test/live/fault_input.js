'use strict';

// What the fault plans do with mouse and keyboard, and what may come of it.
const assert = require('node:assert/strict');
const { until } = require('../support/until.js');
const { inputCalls } = require('./input_calls.js');

/** Where the calls of input_calls.js leave the pointer, of the scene in fault_scene.js. */
const PLACE = [300, 200];
const DRAG_END = [350, 250];

const BOUND_MS = 9000;

/** A drag has dozens of answers, of which most are alike, and a quarter of a second of pauses. */
const FIRST_ONES = 6;
const EACH = 9;

async function assertPointerAt({ keyboard }, place) {
  assert.deepEqual((await keyboard.state()).pointer, place, 'the call had no effect');
}

async function assertNothingHeld({ keyboard }) {
  let state;
  const isFree = async () => {
    state = await keyboard.state();
    const { keys, buttons, elsewhere, base, locked, latched } = state;
    const held = [...keys, ...buttons, ...elsewhere];
    return held.length + base + locked + latched === 0;
  };
  await until(isFree, 'nothing is held').catch((error) => {
    error.message += `: ${JSON.stringify(state)}`;
    throw error;
  });
}

/** Each call gives true, whatever happens; `assertDone`: it has been done when nothing happens. */
function functionOf({ name, pausesMs, silenceMs = BOUND_MS, call }) {
  const isKeys = /^(key|type)/.test(name);
  const place = name === 'mouseDrag' ? DRAG_END : PLACE;
  return {
    name,
    call,
    boundMs: silenceMs + pausesMs,
    values: async () => [true],
    isDocumented: () => false,
    leastAnswers: { first: 8, later: 1 },
    isAlone: true,
    skips: (nth) => name === 'mouseDrag' && nth > FIRST_ONES && nth % EACH > 0,
    async assertDone(scene) {
      if (!isKeys) await assertPointerAt(scene, place);
      if (name !== 'mouseDown') await assertNothingHeld(scene);
    },
  };
}

const cursor = {
  name: 'getCursorPosition',
  call: (addon) => addon.getCursorPosition(),
  boundMs: BOUND_MS,
  values: async () => [
    { x: 560, y: 360 },
    { x: 0, y: 0 },
  ],
  isDocumented: () => false,
  leastAnswers: { first: 8, later: 1 },
};

module.exports = { inputFunctions: [...inputCalls.map(functionOf), cursor] };
