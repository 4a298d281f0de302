'use strict';
// Prints what the process has before and after it loads the addon. The doubles are there already,
// for the frameworks are not what is measured.
const fs = require('node:fs');
const path = require('node:path');

const { buildFolder } = require('../build_folder');
const doubles = require(path.join(buildFolder, 'doubles.node'));

function resources() {
  return {
    threads: fs.readdirSync('/proc/self/task').length,
    files: fs.readdirSync('/proc/self/fd').length,
  };
}

doubles.begin({});
resources();  // whatever looking costs, it has been paid
const before = resources();
process.dlopen({ exports: {} }, path.join(buildFolder, 'deskhand.node'));
const after = resources();
const calls = doubles.calls();
console.log(JSON.stringify({ before, after, calls }));
