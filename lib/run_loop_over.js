'use strict';

// When the main dispatch queue is serviced: what lib/run-loop.js is on macOS.

/** A fraction of what one picture takes; a pass without work costs microseconds. */
const INTERVAL_MS = 4;

/**
 * @param loadBinaries Called at the first start: `{ native, addonFile }`, as loadRunLoop() of load.js
 *   returns them.
 * @returns `start` and `stop`, as lib/run-loop.d.ts describes them.
 */
function runLoopOver(loadBinaries) {
  let native;
  let starts = 0;
  let timer;

  // Unreferenced, the timer keeps no process alive. While a promise of this thread is pending, that
  // does, and the timer fires.
  function pendingChanged(isAnyPending) {
    clearInterval(timer);
    timer = isAnyPending ? setInterval(native.service, INTERVAL_MS).unref() : undefined;
  }

  function start() {
    if (starts === 0) {
      const binaries = loadBinaries();
      native = binaries.native;
      native.start(binaries.addonFile, pendingChanged);
    }
    starts += 1;
  }

  function stop() {
    if (starts === 0) return;
    starts -= 1;
    if (starts > 0) return;
    native.stop();
    pendingChanged(false);
  }

  return { start, stop };
}

module.exports = { runLoopOver };
