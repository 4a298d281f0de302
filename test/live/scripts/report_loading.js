'use strict';

// Reports what the process uses of the system before and after it loads the addon, and after that
// has taken a picture.
const fs = require('node:fs');

const list = (folder) => fs.readdirSync(`/proc/self/${folder}`).length;
// The folder that is being listed is open, too, every time.
const usage = () => ({ threads: list('task'), files: list('fd') });

async function main() {
  const before = usage();
  const addon = require('../../support/addon.js');
  const loaded = usage();
  await addon.captureDisplay([]);
  process.send({ before, loaded, used: usage() });
  process.disconnect();
}

main();
