'use strict';

// Answers of the X server that come late, half or never: each call comes to a documented end in
// time, and the next one works.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startHost } = require('../support/host.js');
const { startXProxy } = require('../support/x_proxy.js');
const { assertDocumented, assertWorks, functions, startScene } = require('./fault_scene.js');

const DELAY_MS = 400;

/** A scene with a server of its own, seen through a proxy by a host that has made no call. */
async function startProxiedScene(t, wanted) {
  const scene = await startScene(t);
  const values = await wanted.values(scene);
  const proxy = await startXProxy(t, scene.server);
  const { addon } = startHost(t, proxy.env);
  const call = () => wanted.call(addon, scene);
  return { scene, proxy, values, call };
}

/** The same when there is a connection, and the number of answers that a call then waits for. */
async function startWarmScene(t, wanted) {
  const proxied = await startProxiedScene(t, wanted);
  const { scene, proxy, values, call } = proxied;
  await assertWorks(wanted, scene, values, call());
  await proxy.passOn();
  await assertWorks(wanted, scene, values, call());
  return { ...proxied, count: await proxy.count() };
}

/** The outcome is another one than that without a fault, where there is any other. */
function assertDisturbed(values, outcome) {
  if (values.length > 1) assert.notEqual(outcome, 0, 'it was not disturbed');
}

// They mostly wait, and at the same time.
describe('a server that falls silent', { concurrency: 12 }, () => {
  for (const wanted of functions) {
    for (const [description, fault, nthOf] of [
      ['instead of its first answer', 'silence', () => 1],
      ['in the middle of its last answer', 'stall', (count) => count],
    ]) {
      test(`${description} ends ${wanted.name} in time`, async (t) => {
        const { scene, proxy, values, call, count } = await startWarmScene(t, wanted);
        await proxy.spoil(nthOf(count), fault);
        const outcome = await assertDocumented(wanted, values, call());
        assertDisturbed(values, outcome);
        await proxy.passOn();
        await assertWorks(wanted, scene, values, call());
      });
    }

    test(`while it is connected to ends ${wanted.name} in time`, async (t) => {
      const { scene, proxy, values, call } = await startProxiedScene(t, wanted);
      await proxy.spoil(1, 'stall');
      const outcome = await assertDocumented(wanted, values, call());
      assertDisturbed(values, outcome);
      await proxy.passOn();
      await proxy.hangUp(); // as a server does that has ended at last
      await assertWorks(wanted, scene, values, call());
    });
  }
});

describe('a server that answers late', { concurrency: 2 }, () => {
  for (const wanted of functions) {
    test(`makes ${wanted.name} wait`, async (t) => {
      const { scene, proxy, values, call, count } = await startWarmScene(t, wanted);
      await proxy.spoil(Math.ceil(count / 2), 'delay', DELAY_MS);
      const start = performance.now();
      await assertWorks(wanted, scene, values, call());
      assert.ok(performance.now() - start >= DELAY_MS, 'nothing was delayed');
    });
  }
});
