'use strict';

// A worker thread that starts captures and says so; it goes on until they are settled or it is
// terminated. workerData: how many.
const { parentPort, workerData } = require('node:worker_threads');
const addon = require('../../support/addon.js');

const flight = Array.from({ length: workerData.captures }, () => addon.captureDisplay([]));
parentPort.postMessage('under way');
Promise.all(flight).then((results) => parentPort.postMessage(results.map(({ width }) => width)));
