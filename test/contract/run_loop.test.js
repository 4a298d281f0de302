'use strict';
// The run loop for plain Node: it services the main queue while promises are pending, and only then.
const assert = require('node:assert/strict');
const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { test } = require('node:test');
const { Worker } = require('node:worker_threads');

const { runScript, spawnScript } = require('./child');
const { scene, shortTimeouts, jpegText, addonPath } = require('./harness');
const { nativePath, newRunLoop, passes } = require('./run_loops');
const { loadRunLoop } = require('../../lib/load');
const systemRunLoop = require('../../lib/run-loop');

const native = require(nativePath);

const plainNode = { mainQueue: 'run loop' };
// Nothing is delivered, so that promises are pending until they time out, after half a second.
const stalled = { timeScale: 0.05, mainQueue: 'stalled', leavesMainQueueBlocks: true };
const timeout = { name: 'Error', message: 'Screenshot capture timed out after 10 seconds' };

/** A run loop that is started, and stopped when the test ends. */
function started(t) {
  const runLoop = newRunLoop();
  runLoop.start();
  t.after(() => runLoop.stop());
  return runLoop;
}

/** Waits for ten events of a timer that is as fast as the run loop's: it would have run meanwhile. */
function tenIntervals() {
  return new Promise((resolve) => {
    let left = 10;
    const timer = setInterval(() => {
      left -= 1;
      if (left > 0) return;
      clearInterval(timer);
      resolve();
    }, 4);
  });
}

/** Waits until ten intervals went by without a pass. */
async function quiet() {
  const deadline = Date.now() + 10_000;
  for (;;) {
    const before = passes();
    await tenIntervals();
    if (passes() === before) return;
    assert.ok(Date.now() < deadline, 'the main queue is serviced on and on');
  }
}

/** A worker thread that takes a picture and posts its width, or the message of its error. */
function capturingWorker() {
  return new Worker(`
    const { parentPort, workerData } = require('node:worker_threads');
    const module_ = { exports: {} };
    process.dlopen(module_, workerData);
    module_.exports.captureDisplay([]).then(
      ({ width }) => parentPort.postMessage(width),
      ({ message }) => parentPort.postMessage(message));
  `, { eval: true, workerData: addonPath });
}

const kinds = [
  ['captureDisplay', [[]], (result) => assert.equal(result.base64, jpegText())],
  ['captureRegion', [[], 0, 0, 9, 9, 9, 9], (result) => assert.equal(result.width, 9)],
  ['listInstalledApps', [], (result) => assert.deepEqual(result, [])],
  ['openApp', ['com.a'], (result) => assert.equal(result, true)],
];
for (const [name, args, check] of kinds) {
  test(`${name} settles when nobody but the run loop services the main queue`, async (t) => {
    const mac = scene(t, { ...plainNode, locations: { 'com.a': '/A.app' } });
    started(t);
    check(await mac.addon[name](...args));
  });
}

test('without it a picture times out', async (t) => {
  const mac = scene(t, { ...shortTimeouts, ...plainNode, leavesMainQueueBlocks: true });
  await assert.rejects(mac.addon.captureDisplay([]), timeout);
  assert.equal(passes(), 0);
});

test('starting connects to the window server, and does not need it to have a display', (t) => {
  const mac = scene(t, { ...plainNode, failing: ['CGMainDisplayID'] });
  started(t);
  assert.deepEqual(mac.calls('js'),
    [['CFRunLoopGetCurrent'], ['CFRunLoopGetMain'], ['CGMainDisplayID']]);
});

test('a run is one pass of the default mode, up to one source', async (t) => {
  const mac = scene(t, plainNode);
  started(t);
  await mac.addon.captureDisplay([]);
  for (const call of mac.callsTo('CFRunLoopRunInMode')) {
    assert.deepEqual(call, ['CFRunLoopRunInMode', 'kCFRunLoopDefaultMode', 0, true]);
  }
});

test('sources that always have more hold the JavaScript thread for sixteen passes', (t) => {
  scene(t, { runLoop: 'never idle' });
  native.service();
  assert.equal(passes(), 16);
});

test('a run loop that is idle is run once', (t) => {
  scene(t, plainNode);
  native.service();
  assert.equal(passes(), 1);
});

test('it is run before and after nothing, and all the while that a promise is pending',
  async (t) => {
    const mac = scene(t, { ...plainNode, image: { answer: 'held' } });
    started(t);
    await tenIntervals();
    assert.equal(passes(), 0);

    const promise = mac.addon.captureDisplay([]);
    await mac.until(() => mac.heldAnswers() === 1);
    const soFar = passes();
    await mac.until(() => passes() > soFar + 5);

    mac.deliver('image');
    await promise;
    await quiet();
    assert.equal(mac.callsTo('dispatch_async').length, 1);
  });

test('of two promises, the one that is left keeps it running', async (t) => {
  const mac = scene(t,
    { ...plainNode, locations: { 'com.a': '/A.app' }, image: { answer: 'held' } });
  started(t);
  const picture = mac.addon.captureDisplay([]);
  assert.equal(await mac.addon.openApp('com.a'), true);
  await mac.until(() => mac.heldAnswers() === 1);
  const soFar = passes();
  await mac.until(() => passes() > soFar + 5);
  mac.deliver('image');
  assert.equal((await picture).base64, jpegText());
  await quiet();
});

test('a second promise finds it running again', async (t) => {
  const mac = scene(t, plainNode);
  started(t);
  await mac.addon.captureDisplay([]);
  await quiet();
  assert.equal((await mac.addon.captureDisplay([])).base64, jpegText());
});

test('a promise that was pending before the start settles', async (t) => {
  const mac = scene(t, plainNode);
  const promise = mac.addon.captureDisplay([]);
  await mac.until(() => mac.waitingMainQueueBlocks() === 1);
  started(t);
  assert.equal((await promise).base64, jpegText());
});

test('a promise of a worker thread settles', async (t) => {
  scene(t, plainNode);
  started(t);
  const worker = capturingWorker();
  assert.equal(await new Promise((resolve) => worker.on('message', resolve)), 1372);
  await worker.terminate();
  await quiet();
});

test('a promise whose worker thread was ended is not waited for', async (t) => {
  const mac = scene(t, stalled);
  started(t);
  const worker = capturingWorker();
  await mac.until(() => passes() > 0);
  await worker.terminate();
  await quiet();
});

test('it cannot be started in a worker thread', async (t) => {
  scene(t);
  const worker = new Worker(`
    const { parentPort, workerData } = require('node:worker_threads');
    const { runLoopOver } = require(workerData.lib + '/run_loop_over.js');
    const { loadRunLoop } = require(workerData.lib + '/load.js');
    const runLoop = runLoopOver(() => loadRunLoop([workerData.addonPath]));
    try {
      runLoop.start();
    } catch (error) {
      runLoop.stop();
      parentPort.postMessage(error.message);
    }
  `, { eval: true, workerData: { addonPath, lib: path.join(__dirname, '../../lib') } });
  const message = await new Promise((resolve, reject) => {
    worker.on('message', resolve).on('error', reject).on('exit', () => resolve('no error'));
  });
  assert.equal(message,
    "The run loop is the main thread's: start it there, not in a worker thread");
});

test('who has started twice has to stop twice', async (t) => {
  const mac = scene(t, { ...plainNode, leavesMainQueueBlocks: true });
  const runLoop = newRunLoop();
  runLoop.start();
  runLoop.start();
  runLoop.stop();
  assert.equal((await mac.addon.captureDisplay([])).base64, jpegText());
  runLoop.stop();
  mac.change(shortTimeouts);
  await assert.rejects(mac.addon.captureDisplay([]), timeout);
});

test('a stop too many does nothing, and a start after it works', async (t) => {
  const mac = scene(t, plainNode);
  const runLoop = newRunLoop();
  runLoop.stop();
  runLoop.start();
  runLoop.stop();
  runLoop.stop();
  runLoop.start();
  t.after(() => runLoop.stop());
  assert.equal((await mac.addon.captureDisplay([])).base64, jpegText());
});

test('stopped in the middle, it is not run again, and the promise times out', async (t) => {
  const mac = scene(t, stalled);
  const runLoop = newRunLoop();
  runLoop.start();
  const promise = mac.addon.captureDisplay([]);
  await mac.until(() => passes() > 0);
  runLoop.stop();
  const soFar = passes();
  await assert.rejects(promise, timeout);
  await tenIntervals();
  assert.equal(passes(), soFar);
});

test('two that are independent of each other both see promises', async (t) => {
  const mac = scene(t, plainNode);
  const module_ = { exports: {} };
  process.dlopen(module_, nativePath);
  const seen = [];
  module_.exports.start(addonPath, (isAnyPending) => seen.push(isAnyPending));
  t.after(() => module_.exports.stop());
  started(t).stop();
  started(t);
  assert.equal((await mac.addon.captureDisplay([])).base64, jpegText());
  await mac.until(() => seen.length === 2);
  assert.deepEqual(seen, [true, false]);
});

test('it may be started and stopped while worker threads take pictures', async (t) => {
  const mac = scene(t);
  const each = process.env.DESKHAND_SANITIZED ? 10 : 50;
  const workers = [1, 2].map(() => new Worker(`
    const { workerData } = require('node:worker_threads');
    const module_ = { exports: {} };
    process.dlopen(module_, workerData.addonPath);
    const take = (left) =>
      left > 0 && module_.exports.captureDisplay([]).then(() => take(left - 1));
    take(workerData.each);
  `, { eval: true, workerData: { addonPath, each } }));
  let exits = 0;
  for (const worker of workers) worker.on('exit', () => { exits += 1; });
  const runLoop = newRunLoop();
  await mac.until(() => {
    runLoop.start();
    runLoop.stop();
    return exits === workers.length;
  });
  await quiet();
  assert.equal(mac.callsTo('dispatch_async').length, 2 * each);
});

test('starting without the main addon, or without its file, is refused', (t) => {
  scene(t);
  assert.throws(() => native.start('/nowhere/deskhand.node', () => {}),
    { message: '/nowhere/deskhand.node is not loaded, or of another version than the run loop' });
  assert.throws(() => native.start(nativePath, () => {}), /is not loaded, or of another version/);
  assert.throws(() => native.start(addonPath), { message: /wrong arguments/ });
});

test('a binary that is missing is told as any other', (t) => {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'deskhand-run-loop-'));
  t.after(() => fs.rmSync(folder, { recursive: true }));
  const alone = path.join(folder, 'deskhand.node');
  fs.symlinkSync(addonPath, alone);
  assert.throws(() => loadRunLoop([alone]), (error) => {
    assert.equal(error.code, 'ERR_DESKHAND_LOAD');
    assert.match(error.message, /run_loop\.node: there is no such file/);
    return true;
  });
});

test('on Linux the package services nothing', async (t) => {
  const mac = scene(t, { ...shortTimeouts, ...plainNode, leavesMainQueueBlocks: true });
  systemRunLoop.start();
  await assert.rejects(mac.addon.captureDisplay([]), timeout);
  systemRunLoop.stop();
  assert.equal(passes(), 0);
});

test('a process that has started it ends by itself, once no promise is pending', async () => {
  assert.deepEqual(await runScript('run_loop_ends.js', 'idle'), {});
  assert.deepEqual(await runScript('run_loop_ends.js', 'picture'), { width: 1372 });
});

test('a promise that does not keep the process alive does not by way of the run loop', async () => {
  assert.deepEqual(await runScript('run_loop_unreferenced.js'), { hasSettled: false });
});

test('process.exit while it runs ends the process with its own code', async () => {
  const { code, signal, stdout, stderr } = await spawnScript('run_loop_exit.js');
  assert.deepEqual({ code, signal, stdout, stderr },
    { code: 7, signal: null, stdout: '', stderr: '' });
});

test('the binary exports its two entry points and no other function of its own', () => {
  const listing = execFileSync('nm', ['--dynamic', '--defined-only', nativePath],
    { encoding: 'utf8', env: { ...process.env, LD_PRELOAD: '' } });
  const functions = listing.trim().split('\n').map((line) => line.split(' '))
    .filter(([, type]) => type === 'T').map(([, , name]) => name);
  assert.deepEqual(functions.sort(),
    ['napi_register_module_v1', 'node_api_module_get_api_version_v1']);
});
