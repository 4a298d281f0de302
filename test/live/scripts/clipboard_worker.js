'use strict';

// Writes the clipboard in a worker thread, which is terminated, and reads it here and elsewhere.
const { execFileSync } = require('node:child_process');
const { Worker, isMainThread, parentPort } = require('node:worker_threads');
const addon = require('../../support/addon.js');

async function main() {
  const worker = new Worker(__filename);
  await new Promise((resolve) => worker.once('message', resolve));
  await worker.terminate();
  const there = execFileSync('xclip', ['-selection', 'clipboard', '-o']).toString();
  process.send({ here: addon.readClipboard(), there });
  process.disconnect();
}

if (isMainThread) {
  main();
} else {
  addon.writeClipboard('from a worker');
  parentPort.postMessage('written');
  setInterval(() => {}, 1000); // until it is terminated
}
