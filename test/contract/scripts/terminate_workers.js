'use strict';
// Ends worker threads that have captures in flight, again and again, and prints what is left over.
// usage: terminate_workers.js <moment> <rounds>
const { Worker } = require('node:worker_threads');

const { doubles, addonPath, sceneWithDefaults, until } = require('../harness');

const capturesEach = 3;  // fewer than the worker pool has threads, so that all are in flight

/** When the worker thread ends, and what comes of its captures afterwards. */
const moments = {
  // The main queue has not come to the captures; it does when their thread is gone.
  'main queue stalled': {
    script: { mainQueue: 'stalled' },
    inFlight: () => doubles.leftovers().mainQueueBlocks === capturesEach,
    afterwards: () => doubles.serviceMainQueue(),
  },
  // The content comes when the thread is gone, and then the picture.
  'content late': {
    script: { content: { answer: 'held' } },
    inFlight: () => doubles.leftovers().heldAnswers === capturesEach,
    afterwards: () => doubles.deliver('content'),
  },
  'image late': {
    script: { image: { answer: 'held' } },
    inFlight: () => doubles.leftovers().heldAnswers === capturesEach,
    afterwards: () => doubles.deliver('image'),
  },
  // The answers come while the thread ends.
  'image at once': {
    script: { timeScale: 1, image: { answer: 'held' } },
    inFlight: () => doubles.leftovers().heldAnswers === capturesEach
      && doubles.deliver('image') > 0,
    afterwards: () => {},
  },
};

const workerSource = `
  const { workerData } = require('node:worker_threads');
  const module_ = { exports: {} };
  process.dlopen(module_, workerData.addonPath);
  const ignore = () => {};
  for (let n = 0; n < workerData.captures; ++n) {
    const promise = n % 2 ? module_.exports.captureDisplay(['com.a'])
                          : module_.exports.captureRegion([], 0, 0, 10, 10, 20, 20);
    promise.then(ignore, ignore);
  }
`;

async function terminateOne({ inFlight, afterwards }) {
  const worker = new Worker(workerSource,
    { eval: true, workerData: { addonPath, captures: capturesEach } });
  if (!await until(inFlight)) throw new Error('the captures did not get under way');
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
