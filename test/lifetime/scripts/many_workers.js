'use strict';

// Several worker threads at once, each of which loads the addon and takes pictures, and the main
// thread with them. Sends the widths of all pictures.
const path = require('node:path');
const { Worker } = require('node:worker_threads');
const addon = require('../../support/addon.js');

function widthsFromWorker() {
  return new Promise((resolve, reject) => {
    const worker = new Worker(path.join(__dirname, 'capturing_worker.js'), {
      workerData: { captures: 2 },
    });
    let widths;
    worker.on('message', (message) => (widths = message));
    worker.on('error', reject);
    worker.on('exit', (code) => (code === 0 ? resolve(widths) : reject(new Error(`exit ${code}`))));
  });
}

async function main() {
  const workers = Array.from({ length: 8 }, widthsFromWorker);
  const { width } = await addon.captureDisplay([]);
  process.send({ main: width, workers: await Promise.all(workers) });
  process.disconnect();
}

main();
