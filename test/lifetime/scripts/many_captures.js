'use strict';

// Takes many pictures, of displays and of regions. Sends what the process uses after the first and
// after the last of them.
const addon = require('../../support/addon.js');
const { usageOf } = require('../../support/processes.js');

const WARM_UP = 100;
const CAPTURES = Number(process.argv[2]);

async function take(count) {
  for (let index = 0; index < count; ++index) {
    if (index % 2 === 0) await addon.captureDisplay([]);
    else await addon.captureRegion([], 100, 100, 400, 300, 200 + (index % 10), 150);
  }
  global.gc();
  return usageOf(process.pid);
}

async function main() {
  await take(WARM_UP);
  // Once more, so that the memory that the collector keeps for itself has its size.
  const before = await take(WARM_UP);
  process.send({ before, after: await take(CAPTURES) });
  process.disconnect();
}

main();
