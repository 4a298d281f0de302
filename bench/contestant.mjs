// One contestant in a process of its own, so that none disturbs another. Takes pictures as its
// parent asks for them, and tells what they cost.
import { createHook } from 'node:async_hooks';
import { performance } from 'node:perf_hooks';

import { contestants } from './contestants.mjs';

const [name, size] = [process.argv[2], JSON.parse(process.argv[3])];

/** One picture, timed from the call until its result is there. */
async function timed(take) {
  const before = performance.eventLoopUtilization();
  const start = performance.now();
  const base64 = await take();
  const ms = performance.now() - start;
  // What the JavaScript thread did not spend waiting for events: the call, the result, all between.
  const busyMs = performance.eventLoopUtilization(before).active;
  return { ms, busyMs, bytes: base64?.length ?? null };
}

/**
 * For how long each of `count` pictures keeps the JavaScript thread: within the call, and within the
 * callbacks of what the call has started. Node's own loop around these is not counted, as it turns for
 * others as well.
 */
async function blocked(take, count) {
  const started = new Set();
  let isCalling = false;
  let begunAt = 0;
  let blockedMs = 0;
  const hook = createHook({
    init: (id, type) => isCalling && type !== 'PROMISE' && started.add(id),
    before: (id) => started.has(id) && (begunAt = performance.now()),
    after: (id) => started.has(id) && (blockedMs += performance.now() - begunAt),
  }).enable();
  const times = [];
  for (let index = 0; index < count; ++index) {
    await new Promise((resolve) => setTimeout(resolve, 30));
    started.clear();
    isCalling = true;
    const start = performance.now();
    const promise = take();
    blockedMs = performance.now() - start;
    isCalling = false;
    await promise;
    await new Promise(setImmediate); // the callback has returned
    times.push(blockedMs);
  }
  hook.disable();
  return times;
}

/** What `count` pictures add to the resident memory of a process that has taken `settled`, in bytes. */
async function growth(take, settled, count) {
  for (let index = 0; index < settled; ++index) await take();
  globalThis.gc();
  const before = process.memoryUsage.rss();
  for (let index = 0; index < count; ++index) await take();
  globalThis.gc();
  return process.memoryUsage.rss() - before;
}

function answer(take, { request, settled, count }) {
  switch (request) {
    case 'time':
      return timed(take);
    case 'picture':
      return take();
    case 'blocked':
      return blocked(take, count);
    case 'growth':
      return growth(take, settled, count);
    default:
      throw new Error(`no such request: ${request}`);
  }
}

process.on('SIGTERM', () => process.exit());
process.on('disconnect', () => process.exit());
try {
  const take = await contestants[name](size);
  process.on('message', async (message) => {
    try {
      process.send({ answer: await answer(take, message) });
    } catch (error) {
      process.send({ error: error.message });
    }
  });
  process.send({ answer: 'ready' });
} catch (error) {
  process.send({ error: error.message });
}
