'use strict';
// Commits one fault that only a sanitizer sees. usage: commit_fault.js <function of faulty.node>
const path = require('node:path');

const { buildFolder } = require('../build_folder');

require(path.join(buildFolder, 'doubles.node'));
require(path.join(buildFolder, 'faulty.node'))[process.argv[2]]();
