'use strict';

// Services the main dispatch queue of a plain Node.js process. On Linux nothing needs to be serviced.
const { loadRunLoop } = require('./load.js');
const { runLoopOver } = require('./run_loop_over.js');

const nothingToService = { start() {}, stop() {} };
const { start, stop } =
  process.platform === 'darwin' ? runLoopOver(loadRunLoop) : nothingToService;

// By name, so that import finds them.
module.exports = { start, stop };
