'use strict';
// Starts the run loop and leaves while a picture is under way in a worker thread that is not waited
// for: prints whether the picture had settled when nothing kept the process alive any more.
const { Worker } = require('node:worker_threads');

const { doubles, addonPath, sceneWithDefaults, until } = require('../harness');
const { newRunLoop, passes } = require('../run_loops');

async function main() {
  doubles.begin(sceneWithDefaults({ timeScale: 0.2, mainQueue: 'stalled' }));
  newRunLoop().start();
  const settled = new Int32Array(new SharedArrayBuffer(4));
  const worker = new Worker(`
    const { workerData } = require('node:worker_threads');
    const module_ = { exports: {} };
    process.dlopen(module_, workerData.addonPath);
    const note = () => Atomics.store(workerData.settled, 0, 1);
    module_.exports.captureDisplay([]).then(note, note);
  `, { eval: true, workerData: { addonPath, settled } });
  if (!await until(() => passes() > 0)) throw new Error('the run loop did not get under way');
  process.on('beforeExit', () => {
    console.log(JSON.stringify({ hasSettled: Atomics.load(settled, 0) === 1 }));
  });
  worker.unref();
}

main();
