'use strict';
// Ends worker threads that have promises in flight, again and again, and prints what is left over.
// usage: terminate_workers.js <moment> <rounds>
const { Worker } = require('node:worker_threads');

const { doubles, addonPath, sceneWithDefaults, until } = require('../harness');

const promisesEach = 3;  // fewer than the worker pool has threads, so that all are in flight

/** When the worker thread ends, and what comes of its promises afterwards; captures, unless the
 * moment has another call. */
const moments = {
  // The main queue has not come to the captures; it does when their thread is gone.
  'main queue stalled': {
    script: { mainQueue: 'stalled' },
    inFlight: () => doubles.leftovers().mainQueueBlocks === promisesEach,
    afterwards: () => doubles.serviceMainQueue(),
  },
  // The content comes when the thread is gone, and then the picture.
  'content late': {
    script: { content: { answer: 'held' } },
    inFlight: () => doubles.leftovers().heldAnswers === promisesEach,
    afterwards: () => doubles.deliver('content'),
  },
  'image late': {
    script: { image: { answer: 'held' } },
    inFlight: () => doubles.leftovers().heldAnswers === promisesEach,
    afterwards: () => doubles.deliver('image'),
  },
  // The answers come while the thread ends.
  'image at once': {
    script: { timeScale: 1, image: { answer: 'held' } },
    inFlight: () => doubles.leftovers().heldAnswers === promisesEach
      && doubles.deliver('image') > 0,
    afterwards: () => {},
  },
  'gathering late': {
    script: { query: { answer: 'held', results: [{ path: '/A.app', displayName: 'A' }] } },
    call: 'listInstalledApps()',
    inFlight: () => doubles.leftovers().heldAnswers === promisesEach,
    afterwards: () => doubles.deliver('query'),
  },
  'opening late': {
    script: { locations: { 'com.a': '/A.app' }, open: { answer: 'held' } },
    call: "openApp('com.a')",
    inFlight: () => doubles.leftovers().heldAnswers === promisesEach,
    afterwards: () => doubles.deliver('open'),
  },
};

const captures = `n % 2 ? addon.captureDisplay(['com.a'])
                        : addon.captureRegion([], 0, 0, 10, 10, 20, 20)`;

const workerSource = (call) => `
  const { workerData } = require('node:worker_threads');
  const module_ = { exports: {} };
  process.dlopen(module_, workerData.addonPath);
  const addon = module_.exports;
  const ignore = () => {};
  for (let n = 0; n < workerData.promises; ++n) {
    const promise = ${call};
    promise.then(ignore, ignore);
  }
`;

async function terminateOne({ call, inFlight, afterwards }) {
  const worker = new Worker(workerSource(call ? `addon.${call}` : captures),
    { eval: true, workerData: { addonPath, promises: promisesEach } });
  if (!await until(inFlight)) throw new Error('the promises did not get under way');
  await worker.terminate();
  afterwards();
}

async function main(name, rounds) {
  const moment = moments[name];
  doubles.begin(sceneWithDefaults({ timeScale: 0.002, ...moment.script }));
  for (let round = 0; round < rounds; ++round) await terminateOne(moment);
  const isClean = () => {
    const { objects, ...counts } = doubles.leftovers();
    return Object.keys(objects).length === 0 && Object.values(counts).every((n) => n === 0);
  };
  const clean = await until(isClean);
  const asked = doubles.calls()
    .filter(({ call }) => call[0] === 'dispatch_semaphore_create').length;
  console.log(JSON.stringify({
    asked, clean, leftovers: doubles.leftovers(), violations: doubles.violations(),
  }));
}

main(process.argv[2], Number(process.argv[3]));
