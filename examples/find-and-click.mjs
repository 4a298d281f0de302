// Looks for a colour on the screen and clicks in the middle of it.
// Usage: node find-and-click.mjs '#d81b60'
// The picture is decoded by sharp (npm install sharp).
import deskhand from 'deskhand';
import sharp from 'sharp';

/** JPEG changes colours a little. */
const TOLERANCE = 12;

/** The middle of the pixels that have the colour, or undefined when there are none. */
async function find(shot, [red, green, blue]) {
  const { data } = await sharp(Buffer.from(shot.base64, 'base64'))
    .raw()
    .toBuffer({ resolveWithObject: true });
  let [count, sumX, sumY] = [0, 0, 0];
  for (let y = 0; y < shot.height; ++y) {
    for (let x = 0; x < shot.width; ++x) {
      const [r, g, b] = data.subarray(3 * (y * shot.width + x));
      const off = Math.max(Math.abs(r - red), Math.abs(g - green), Math.abs(b - blue));
      if (off > TOLERANCE) continue;
      [count, sumX, sumY] = [count + 1, sumX + x, sumY + y];
    }
  }
  // The middle of a pixel is half a pixel from its corner.
  return count > 0 ? { px: sumX / count + 0.5, py: sumY / count + 0.5 } : undefined;
}

const colour = process.argv[2]?.match(/^#(..)(..)(..)$/)?.slice(1).map((hex) => parseInt(hex, 16));
if (!colour) throw new Error("a colour is needed, such as '#d81b60'");

/** The first place of the colour on any display, in points of the desktop. */
async function findOnDesktop() {
  for (const { id } of deskhand.listDisplays()) {
    const shot = await deskhand.captureDisplay([], 0.9, id);
    const place = await find(shot, colour);
    if (!place) continue;
    return {
      x: shot.originX + (place.px * shot.displayWidth) / shot.width,
      y: shot.originY + (place.py * shot.displayHeight) / shot.height,
    };
  }
  throw new Error('this colour is nowhere on the screen');
}

const { x, y } = await findOnDesktop();
deskhand.mouseClick('left', x, y);
console.log(`clicked at ${x.toFixed(1)}, ${y.toFixed(1)}`);
