'use strict';

// Any single answer of the X server may be an error, or its last: the outcome is a documented one
// each time, and the next call works. Each function runs once for every answer that it waits for,
// with that answer spoilt, on a new connection and on one that has been used. With
// `scripts/live --full` each new connection is also a new process's.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startHost } = require('../support/host.js');
const { until } = require('../support/until.js');
const { startXProxy } = require('../support/x_proxy.js');
const { assertDocumented, assertWorks, functions, startScene } = require('./fault_scene.js');

const BAD_WINDOW = 3;
const BAD_MATCH = 8;
const BAD_ALLOC = 11;
const CODES = [BAD_WINDOW, BAD_MATCH, BAD_ALLOC];

/** Longer than a test may take; a server that stays grabbed would stop it for good. */
const TEST_MS = 120_000;

const faults = {
  error: 'an error',
  close: 'the end of the connection',
  cut: 'cut in the middle',
};

/** Ends what `action` starts when it is over. */
async function within(action) {
  const ends = [];
  try {
    return await action({ after: (end) => ends.push(end) });
  } finally {
    for (const end of ends) await end();
  }
}

/** A plan for one function and one kind of fault: a proxy of its own, and what came of it. */
async function makePlan(t, { wanted, scene, values, fault, outcomes }) {
  const proxy = await startXProxy(t, scene.server);
  const call = ({ addon }) => wanted.call(addon, scene);
  /** Whether the call waits for an nth answer; it then gets that one spoilt. */
  const reaches = async (host, nth) => {
    await proxy.spoil(nth, fault, CODES[nth % CODES.length]);
    outcomes.add(await assertDocumented(wanted, values, call(host)));
    const count = await proxy.count();
    await proxy.passOn();
    await assertWorks(wanted, scene, values, call(host));
    return count >= nth;
  };
  /** The number of answers; each was spoilt in a host that `withHost` gives. */
  const run = async (withHost) => {
    for (let nth = 1; ; ++nth) {
      if (wanted.skips?.(nth)) continue;
      const goOn = await withHost((host) => reaches(host, nth)).catch((error) => {
        error.message = `when answer ${nth} is ${faults[fault]}: ${error.message}`;
        throw error;
      });
      if (!goOn) return nth - 1;
    }
  };
  return { call, env: proxy.env, run, drop: proxy.drop };
}

/** Gives a host that has no connection yet: always another one, or one that has lost its own. */
function withNewConnections(t, plan) {
  if (process.env.DESKHAND_FULL) {
    return (use) => within((scope) => use(startHost(scope, plan.env)));
  }
  const host = startHost(t, plan.env);
  return async (use) => {
    await plan.drop();
    return use(host);
  };
}

describe('whichever answer is spoilt', () => {
  for (const wanted of functions) {
    const options = { concurrency: wanted.isAlone ? 1 : 2, timeout: TEST_MS };
    test(`${wanted.name} has a documented outcome`, options, async (t) => {
      const scene = await startScene(t);
      const values = await wanted.values(scene);
      const outcomes = new Set();
      const { first, later } = wanted.leastAnswers ?? { first: 8, later: 3 };
      const subtests = Object.keys(faults).flatMap((fault) => [
        t.test(`by ${faults[fault]}, in the first call on a connection`, async (t) => {
          const plan = await makePlan(t, { wanted, scene, values, fault, outcomes });
          const count = await plan.run(withNewConnections(t, plan));
          assert.ok(count >= first, `only ${count} answers`);
        }),

        t.test(`by ${faults[fault]}, when there is a connection`, async (t) => {
          const plan = await makePlan(t, { wanted, scene, values, fault, outcomes });
          const host = startHost(t, plan.env);
          await assertWorks(wanted, scene, values, plan.call(host));
          await plan.run((use) => use(host));
          const settled = host.usage();
          const count = await plan.run((use) => use(host));
          assert.ok(count >= later, `only ${count} answers`);
          await until(() => {
            const { files, threads } = host.usage();
            return files === settled.files && threads === settled.threads;
          }, 'no file and no thread is left over');
        }),
      ]);
      await Promise.all(subtests);
      // The list of values says what happens, not what might.
      for (const place of values.keys()) {
        assert.ok(outcomes.has(place), `value ${place} never came`);
      }
    });
  }
});
