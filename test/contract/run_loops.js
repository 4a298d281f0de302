'use strict';
// The run loop as lib/run-loop.js has it on macOS, over the doubles.
const path = require('node:path');

const { addonPath, doubles } = require('./harness');
const { loadRunLoop } = require('../../lib/load');
const { runLoopOver } = require('../../lib/run_loop_over');

const nativePath = path.join(path.dirname(addonPath), 'run_loop.node');

/** A run loop of the test's own. */
function newRunLoop() {
  return runLoopOver(() => loadRunLoop([addonPath]));
}

/** How often the system's run loop was run. */
function passes() {
  return doubles.calls().filter(({ call }) => call[0] === 'CFRunLoopRunInMode').length;
}

module.exports = { nativePath, newRunLoop, passes };
