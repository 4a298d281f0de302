'use strict';
// Every contract test in one process, where starting one is dear: under sanitizers.
const fs = require('node:fs');
const path = require('node:path');

for (const name of fs.readdirSync(__dirname).sort()) {
  if (name.endsWith('.test.js')) require(path.join(__dirname, name));
}
