'use strict';

// Takes the frontmost window with two pixels for each point, so that small text stays legible
// which a picture of the whole display, within its size budget, would blur.
// Usage: node region-at-2x.js [FILE]
const { writeFileSync } = require('node:fs');
const { captureRegion, getWindowList, listDisplays } = require('deskhand');

const DENSITY = 2;

/** The part of a window that is on its display, in points from the display's top-left corner. */
function visiblePart(window, display) {
  const left = Math.max(window.x, display.originX);
  const top = Math.max(window.y, display.originY);
  const right = Math.min(window.x + window.w, display.originX + display.width);
  const bottom = Math.min(window.y + window.h, display.originY + display.height);
  return [left - display.originX, top - display.originY, right - left, bottom - top];
}

async function main(file = 'window.jpg') {
  const [window] = getWindowList();
  if (!window) throw new Error('there is no window');
  const display = listDisplays().find(({ id }) => id === window.displayId);
  const [x, y, w, h] = visiblePart(window, display);
  const [outW, outH] = [DENSITY * w, DENSITY * h];
  const shot = await captureRegion([], x, y, w, h, outW, outH, 0.9, display.id);
  writeFileSync(file, Buffer.from(shot.base64, 'base64'));
  console.log(`${file}: ${window.bundleId}, ${shot.width} x ${shot.height} pixels`);
}

main(process.argv[2]).catch((error) => {
  console.error(error.message);
  process.exitCode = 1;
});
