'use strict';

// Counts the turns of the event loop while captures are under way. Sends the turns that each
// capture took to be settled, in order, and what became of it.
const addon = require('../../support/addon.js');

const captures = Number(process.argv[2]);

let turns = 0;
let running = true;

function turn() {
  ++turns;
  if (running) setImmediate(turn);
}

async function main() {
  setImmediate(turn);
  const outcomes = [];
  const settle = (index, status) => outcomes.push({ index, status, turns });
  await Promise.all(
    Array.from({ length: captures }, (_, index) =>
      addon.captureRegion([], 0, 0, 100, 100, 100 + index, 100).then(
        ({ width }) => settle(index, width === 100 + index ? 'resolved' : 'mixed up'),
        () => settle(index, 'rejected'),
      ),
    ),
  );
  running = false;
  process.send(outcomes);
  process.disconnect();
}

main();
