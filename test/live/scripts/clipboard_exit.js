'use strict';

// Writes a text of so many bytes to the clipboard, and ends when it is told how: 'by itself', or
// with 'process.exit'. Sends when it has begun to.
const addon = require('../../support/addon.js');

addon.writeClipboard('k'.repeat(Number(process.argv[2])));
process.once('message', (how) => {
  process.send('ending');
  if (how === 'process.exit') process.exit(7);
  process.disconnect();
});
process.send('written');
