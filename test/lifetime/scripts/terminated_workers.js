'use strict';

// Terminates worker threads that have captures under way, again and again. Sends what the process
// uses now and then.
const path = require('node:path');
const { Worker } = require('node:worker_threads');
const { usageOf } = require('../../support/processes.js');

const ROUNDS = Number(process.argv[2]);
const ROUNDS_PER_REPORT = Number(process.argv[3]);

/** Resolves to what the worker had still to say when it was terminated. */
async function terminateOne() {
  const worker = new Worker(path.join(__dirname, 'capturing_worker.js'), {
    workerData: { captures: 4 },
  });
  const said = [];
  await new Promise((resolve, reject) => {
    worker.on('message', (message) => said.push(message) && resolve());
    worker.on('error', reject);
  });
  await worker.terminate();
  return said;
}

async function main() {
  let unfinished = 0;
  for (let round = 1; round <= ROUNDS; ++round) {
    const said = await terminateOne();
    if (said.length === 1) ++unfinished;
    if (round % ROUNDS_PER_REPORT === 0) {
      global.gc();
      process.send({ round, unfinished, ...usageOf(process.pid) });
    }
  }
  process.disconnect();
}

main();
