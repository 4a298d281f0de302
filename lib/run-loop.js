'use strict';

// Services the main dispatch queue of a plain Node.js process. On Linux nothing needs to be serviced.

/** Begins to service the queue. */
function start() {}

/** Ends it. */
function stop() {}

module.exports = { start, stop };
