'use strict';
// The promise workers: a hop to the main queue, ten seconds at most, exactly one settlement.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene, builtIn, shortTimeouts, jpegText } = require('./harness');

const region = [0, 0, 10, 10, 10, 10];
const kinds = [
  ['captureDisplay', (mac) => mac.addon.captureDisplay([]), 'Screenshot'],
  ['captureRegion', (mac) => mac.addon.captureRegion([], ...region), 'Region'],
];

/** Lets everything that is due on the JavaScript thread happen. */
function turn() {
  return new Promise(setImmediate);
}

for (const [name, capture, what] of kinds) {
  const timeout = { name: 'Error', message: `${what} capture timed out after 10 seconds` };

  test(`${name} returns a promise`, async (t) => {
    const mac = scene(t);
    const promise = capture(mac);
    assert.ok(promise instanceof Promise);
    await promise;
  });

  test(`${name}: a main queue that never runs the block rejects with the timeout message`,
    async (t) => {
      const mac = scene(t, {
        ...shortTimeouts, mainQueue: 'stalled', leavesMainQueueBlocks: true,
      });
      await assert.rejects(capture(mac), timeout);
      assert.equal(mac.waitingMainQueueBlocks(), 1);
    });

  test(`${name} waits ten seconds, in nanoseconds from now`, async (t) => {
    const mac = scene(t);
    await capture(mac);
    assert.deepEqual(mac.callsTo('dispatch_time'),
      [['dispatch_time', 'DISPATCH_TIME_NOW', 10_000_000_000]]);
  });

  test(`${name}: a failure without a message still rejects with the generic text`, async (t) => {
    const mac = scene(t, { image: { result: 'neither' } });
    await assert.rejects(capture(mac), { message: `${what} capture failed` });
  });

  test(`${name}: the rejection value is an Error, not a string`, async (t) => {
    const mac = scene(t, { content: { result: 'error' } });
    const reason = await capture(mac).then(() => null, (error) => error);
    assert.ok(reason instanceof Error);
    assert.equal(Object.getPrototypeOf(reason), Error.prototype);
    assert.equal(typeof reason.message, 'string');
  });

  for (const subject of ['content', 'image']) {
    test(`${name}: ${subject} that never comes rejects with the timeout message`, async (t) => {
      const mac = scene(t, { ...shortTimeouts, [subject]: { answer: 'never' } });
      await assert.rejects(capture(mac), timeout);
    });

    for (const result of ['success', 'error', 'both', 'neither']) {
      test(`${name}: ${subject} that comes late with ${result} is harmless`, async (t) => {
        const outcome = result === 'success' ? {} : { result };
        const mac = scene(t, { ...shortTimeouts, [subject]: { answer: 'held', ...outcome } });
        await assert.rejects(capture(mac), timeout);
        await mac.until(() => mac.heldAnswers() === 1);
        assert.equal(mac.deliver(subject), 1);
      });
    }

    test(`${name}: the ${subject} handler called twice settles once`, async (t) => {
      const mac = scene(t, { [subject]: { times: 2 } });
      let settlements = 0;
      const promise = capture(mac);
      promise.then(() => { settlements += 1; });
      assert.equal((await promise).base64, jpegText());
      await mac.rest();
      assert.equal(settlements, 1);
      assert.equal(mac.callsTo('dispatch_semaphore_signal').length, 1);
    });

    test(`${name}: the ${subject} handler called twice with an error rejects once`, async (t) => {
      const mac = scene(t, { [subject]: { times: 2, result: 'error', error: 'twice' } });
      await assert.rejects(capture(mac), /: twice$/);
      await mac.rest();
      assert.equal(mac.callsTo('dispatch_semaphore_signal').length, 1);
    });

    for (const answer of ['inline', 'main queue', 'thread']) {
      test(`${name}: the ${subject} handler may come ${
        { inline: 'before the request returns', 'main queue': 'on the main queue',
          thread: 'on another thread' }[answer]}`, async (t) => {
        const mac = scene(t, { [subject]: { answer } });
        assert.equal((await capture(mac)).base64, jpegText());
      });
    }
  }

  test(`${name}: a main queue that comes to the block late is harmless`, async (t) => {
    const mac = scene(t, { ...shortTimeouts, mainQueue: 'stalled' });
    await assert.rejects(capture(mac), timeout);
    assert.equal(mac.serviceMainQueue(), 1);
    // The abandoned block did ask, and was answered, but nobody waits for it.
    await mac.until(() => mac.callsTo('dispatch_semaphore_signal').length === 1);
  });

  test(`${name}: a main queue that is slow but in time succeeds`, async (t) => {
    const mac = scene(t, { mainQueue: { delayMs: 20 } });
    assert.equal((await capture(mac)).base64, jpegText());
  });

  test(`${name}: a main queue that is serviced by hand succeeds`, async (t) => {
    const mac = scene(t, { mainQueue: 'stalled' });
    const promise = capture(mac);
    await mac.until(() => mac.waitingMainQueueBlocks() === 1);
    assert.equal(mac.serviceMainQueue(), 1);
    assert.equal((await promise).base64, jpegText());
  });

  test(`${name}: a call after a timeout works`, async (t) => {
    const mac = scene(t, { ...shortTimeouts, content: { answer: 'never' } });
    await assert.rejects(capture(mac), timeout);
    mac.change({ timeScale: 1, content: {} });
    assert.equal((await capture(mac)).base64, jpegText());
  });

  test(`${name} signals its semaphore exactly once`, async (t) => {
    const mac = scene(t);
    await capture(mac);
    assert.equal(mac.callsTo('dispatch_semaphore_signal').length, 1);
  });

  test(`${name} does not block the JavaScript thread`, async (t) => {
    const mac = scene(t, { image: { answer: 'held' } });
    let isSettled = false;
    const promise = capture(mac).then(() => { isSettled = true; });
    await mac.until(() => mac.heldAnswers() === 1);
    for (let turns = 0; turns < 100; ++turns) await turn();
    assert.equal(isSettled, false);
    mac.deliver('image');
    await promise;
  });

  test(`${name} does nothing on the JavaScript thread but queue its worker`, async (t) => {
    const mac = scene(t);
    await capture(mac);
    assert.deepEqual(mac.calls('js'), []);
  });
}

test('several captures in flight each get their own answer', async (t) => {
  const mac = scene(t, {
    screens: [builtIn, { id: 2, frame: [1512, 0, 800, 600], scale: 1, name: 'Second' }],
    content: { answer: 'held' },
  });
  const promises = [
    mac.addon.captureDisplay([], 0.5, 2),
    mac.addon.captureRegion([], 0, 0, 10, 10, 20, 30),
    mac.addon.captureDisplay([], 0.5, 1),
    mac.addon.captureRegion([], 0, 0, 10, 10, 40, 50),
  ];
  // All four wait at once: Node's worker pool has four threads.
  await mac.until(() => mac.heldAnswers() === 4);
  mac.deliver('content');
  const results = await Promise.all(promises);
  assert.deepEqual(results.map(({ width, height }) => [width, height]),
    [[800, 600], [20, 30], [1372, 891], [40, 50]]);
});

test('more captures than worker threads all settle', async (t) => {
  const mac = scene(t);
  const sizes = Array.from({ length: 40 }, (_, index) => index + 1);
  const results = await Promise.all(
    sizes.map((size) => mac.addon.captureRegion([], 0, 0, 10, 10, size, size)));
  assert.deepEqual(results.map(({ width }) => width), sizes);
  assert.equal(mac.callsTo('dispatch_semaphore_signal').length, sizes.length);
});

test('the answer to a capture that was given up does not reach the one that follows', async (t) => {
  const mac = scene(t, { ...shortTimeouts, mainQueue: 'stalled', content: { answer: 'held' } });
  await assert.rejects(mac.addon.captureDisplay([]),
    { message: 'Screenshot capture timed out after 10 seconds' });
  mac.change({ timeScale: 1 });
  const promise = mac.addon.captureRegion([], ...region);
  await mac.until(() => mac.waitingMainQueueBlocks() === 2);
  assert.equal(mac.serviceMainQueue(), 2);
  assert.equal(mac.deliver('content'), 2);
  assert.deepEqual(await promise, { base64: jpegText(), width: 10, height: 10 });
});
