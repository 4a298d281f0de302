'use strict';

// Ends the process with captures under way: at once, or when it is told to.
const addon = require('../../support/addon.js');

function exitWithCaptures() {
  for (let index = 0; index < 4; ++index) addon.captureDisplay([]);
  // In a later turn, so that the pool has begun.
  setImmediate(() => process.exit(7));
}

async function main() {
  await addon.captureDisplay([]);
  if (process.argv[2] !== 'when told') {
    exitWithCaptures();
    return;
  }
  process.once('message', exitWithCaptures);
  process.send('ready');
}

main();
