'use strict';

// Writes the clipboard in a worker thread, which is terminated, and reads it here and elsewhere.
// Sends what was read, and which files a program gets that is started before and after.
const { execFileSync } = require('node:child_process');
const { Worker, isMainThread, parentPort } = require('node:worker_threads');
const addon = require('../../support/addon.js');

const inheritedFiles = () => execFileSync('ls', ['/proc/self/fd']).toString().split('\n');

async function main() {
  const before = inheritedFiles();
  const worker = new Worker(__filename);
  await new Promise((resolve) => worker.once('message', resolve));
  await worker.terminate();
  const there = execFileSync('xclip', ['-selection', 'clipboard', '-o']).toString();
  process.send({ here: addon.readClipboard(), there, before, after: inheritedFiles() });
  process.disconnect();
}

if (isMainThread) {
  main();
} else {
  addon.writeClipboard('from a worker');
  parentPort.postMessage('written');
  setInterval(() => {}, 1000); // until it is terminated
}
