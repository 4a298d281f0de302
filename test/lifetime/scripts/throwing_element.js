'use strict';

// Calls the captures with an array that throws while it is read. Sends what was thrown and what the
// process uses before and after.
const addon = require('../../support/addon.js');
const { usageOf } = require('../../support/processes.js');

const excluded = ['first', 'second', 'third'];
Object.defineProperty(excluded, 1, {
  get: () => {
    throw new RangeError('not this one');
  },
});

function attempt(call) {
  try {
    return { returned: typeof call() };
  } catch (error) {
    return { name: error.name, message: error.message };
  }
}

const usage = () => {
  const { threads, files } = usageOf(process.pid);
  return { threads, files };
};

const before = usage();
const thrown = [
  attempt(() => addon.captureDisplay(excluded)),
  attempt(() => addon.captureRegion(excluded, 0, 0, 10, 10, 10, 10)),
];
process.send({ thrown, before, after: usage() });
process.disconnect();
