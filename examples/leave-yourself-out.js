'use strict';

// Takes a picture of the desktop without the application that is in front, say the terminal that
// this runs in: what lies behind its windows shows.
// Usage: node leave-yourself-out.js [FILE [BUNDLE-IDENTIFIER...]]
const { writeFileSync } = require('node:fs');
const { captureDisplay, getFrontmostApp } = require('deskhand');

async function main(file = 'without.jpg', ...bundleIds) {
  if (bundleIds.length === 0) {
    const front = getFrontmostApp();
    if (!front) throw new Error('no application is in front: name those to leave out');
    bundleIds.push(front.bundleId);
  }
  const shot = await captureDisplay(bundleIds);
  writeFileSync(file, Buffer.from(shot.base64, 'base64'));
  console.log(`${file}: without ${bundleIds.join(', ')}`);
}

main(...process.argv.slice(2)).catch((error) => {
  console.error(error.message);
  process.exitCode = 1;
});
