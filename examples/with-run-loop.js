'use strict';

// On macOS a plain Node.js process takes no pictures and opens nothing unless somebody services the
// main dispatch queue. This does, for a program that knows nothing of it; on Linux it does nothing.
// Usage: node --require ./with-run-loop.js screenshot.js
require('deskhand/run-loop').start();
