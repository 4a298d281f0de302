'use strict';
// Ends worker threads in the middle of calls that throw, again and again, and prints what is left
// over. A thread that is being ended cannot throw any more. usage: terminate_throwing.js <rounds>
const { Worker } = require('node:worker_threads');

const { doubles, addonPath, sceneWithDefaults } = require('../harness');

const workerSource = `
  const { workerData } = require('node:worker_threads');
  const module_ = { exports: {} };
  process.dlopen(module_, workerData.addonPath);
  const { mouseMove, keyHold, keyPress } = module_.exports;
  const started = new Int32Array(workerData.started);
  for (;;) {
    try { mouseMove('x', 'y'); } catch {}
    try { keyHold('a', 'x'); } catch {}
    try { keyPress('no key'); } catch {}
    Atomics.store(started, 0, 1);
    Atomics.notify(started, 0);
  }
`;

async function terminateOne() {
  doubles.begin(sceneWithDefaults({}));
  const started = new SharedArrayBuffer(4);
  const worker = new Worker(workerSource, { eval: true, workerData: { addonPath, started } });
  if (Atomics.wait(new Int32Array(started), 0, 0, 5000) === 'timed-out') {
    throw new Error('the calls did not get under way');
  }
  await worker.terminate();
}

async function main(rounds) {
  for (let round = 0; round < rounds; ++round) await terminateOne();
  const { objects, pools } = doubles.leftovers();
  console.log(JSON.stringify({ rounds, objects, pools, violations: doubles.violations() }));
}

main(Number(process.argv[2]));
