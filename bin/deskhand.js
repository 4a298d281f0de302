#!/usr/bin/env node
'use strict';

require('../lib/cli/main.js').run(process.argv);
