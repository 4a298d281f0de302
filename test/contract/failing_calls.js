'use strict';
// Running a function once for every platform call that it makes, with that call failing.
const assert = require('node:assert/strict');

const { scene } = require('./harness');

/** { result } or { failure }, whichever the call came to. */
async function outcomeOf(call) {
  try {
    return { result: await call() };
  } catch (error) {
    assert.equal(Object.getPrototypeOf(error), Error.prototype);
    return { failure: error.message };
  }
}

function isEqual(actual, expected) {
  try {
    assert.deepEqual(actual, expected);
    return true;
  } catch {
    return false;
  }
}

/**
 * Makes `call(mac)` in a scene of its own with the first platform call failing, then the second, and
 * so on, and at last with none. Each outcome is one of `results` or of `failures`, which are messages
 * of errors, and each of those comes about. Resolves with how many calls can fail. `settingOf` gives
 * the scene in which a certain call fails.
 */
async function failEachCall(t, { settingOf, call, results, failures = [] }) {
  const used = new Set();
  let failing = 0;
  let wasReached = true;
  while (wasReached) {
    failing += 1;
    await t.test(`call ${failing}`, async (t) => {
      const mac = scene(t, settingOf(failing));
      mac.failCall(failing);
      const { result, failure } = await outcomeOf(() => call(mac));
      const calls = mac.failableCalls();
      wasReached = calls.length >= failing;
      const failed = wasReached ? calls[failing - 1] : 'none';
      const place = failure === undefined
        ? results.findIndex((documented) => isEqual(result, documented))
        : failures.indexOf(failure);
      assert.ok(place >= 0,
        `${failed} failed, and then: ${JSON.stringify({ result, failure })}`);
      used.add(failure === undefined ? `result ${place}` : failure);
    });
  }
  // The lists say what happens, not what might.
  const listed = [...results.keys()].map((place) => `result ${place}`).concat(failures);
  assert.deepEqual([...used].sort(), listed.sort());
  return failing - 1;
}

module.exports = { failEachCall };
