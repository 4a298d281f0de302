'use strict';

const path = require('node:path');

/** The addon under test: the package, or the binary that DESKHAND_BINARY names. */
module.exports = require(process.env.DESKHAND_BINARY ?? path.join(__dirname, '..', '..'));
