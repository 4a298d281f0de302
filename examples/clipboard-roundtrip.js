'use strict';

// Puts a text on the clipboard and waits until something else is copied, which it prints.
// On X11 a text lives with the process that has put it there, so this one stays until then.
// Usage: node clipboard-roundtrip.js TEXT
const { setTimeout: delay } = require('node:timers/promises');
const { readClipboard, writeClipboard } = require('deskhand');

const INTERVAL_MS = 250;

async function main(text) {
  if (text === undefined) throw new Error('which text?');
  writeClipboard(text);
  if (readClipboard() !== text) throw new Error('the clipboard did not take the text');
  console.log('The text is on the clipboard. Paste it; then copy something else.');
  let now;
  // null: something is there that is no text.
  while ((now = readClipboard()) === text) await delay(INTERVAL_MS);
  console.log(`now there is ${JSON.stringify(now)}`);
}

main(process.argv[2]).catch((error) => {
  console.error(error.message);
  process.exitCode = 1;
});
