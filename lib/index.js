'use strict';

// The native exports object itself, nothing added.
module.exports = require('./load.js').load();
