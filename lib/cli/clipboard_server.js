'use strict';

// A process that has put a text on the clipboard and stays until something else is there. It is sent the text,
// and answers whether it is on the clipboard.
const addon = require('../index.js');

const LOOK_MS = 500;

process.once('message', (text) => {
  addon.writeClipboard(text);
  // One's own text is told without asking anybody; it ends at U+0000.
  const served = addon.readClipboard();
  process.send(served !== null);
  if (served === null) process.disconnect();
  else {
    const looking = setInterval(() => {
      if (addon.readClipboard() !== served) clearInterval(looking);
    }, LOOK_MS);
  }
});
