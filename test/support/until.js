'use strict';

const { setTimeout: delay } = require('node:timers/promises');

const INTERVAL_MS = 10;

/** The first truthy value of `condition`, asked again and again; fails when none comes in time. */
async function until(condition, what, { timeoutMs = 30_000 } = {}) {
  const deadline = performance.now() + timeoutMs;
  for (;;) {
    const value = await condition();
    if (value) return value;
    if (performance.now() > deadline) {
      throw new Error(`after ${timeoutMs} ms still waiting until ${what}`);
    }
    await delay(INTERVAL_MS);
  }
}

module.exports = { until };
