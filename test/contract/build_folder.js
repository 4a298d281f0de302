'use strict';
// Where the addon and the doubles were built.
const path = require('node:path');

module.exports = {
  buildFolder: path.resolve(
    process.env.DESKHAND_CONTRACT_BUILD || path.join(__dirname, '../../build/contract')),
};
