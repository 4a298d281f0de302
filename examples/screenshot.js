'use strict';

// Takes a picture of the main display and writes it to a file.
// Usage: node screenshot.js [FILE]
const { writeFileSync } = require('node:fs');
const { captureDisplay } = require('deskhand');

async function main(file = 'screen.jpg') {
  const shot = await captureDisplay([]);
  writeFileSync(file, Buffer.from(shot.base64, 'base64'));
  console.log(
    `${file}: ${shot.width} x ${shot.height} pixels ` +
      `of a display of ${shot.displayWidth} x ${shot.displayHeight} points`,
  );
}

main(process.argv[2]).catch((error) => {
  console.error(error.message);
  process.exitCode = 1;
});
