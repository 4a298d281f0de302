'use strict';

const assert = require('node:assert/strict');
const sharp = require('sharp');

/** How far a channel of a flat area may be off after JPEG at the usual qualities. */
const JPEG_TOLERANCE = 6;

function parse(colour) {
  return [1, 3, 5].map((start) => Number.parseInt(colour.slice(start, start + 2), 16));
}

/** The JPEG of a capture's `base64`, decoded: { width, height, rgb, at(x, y) }. */
async function decode(base64) {
  const { data, info } = await sharp(Buffer.from(base64, 'base64'))
    .raw()
    .toBuffer({ resolveWithObject: true });
  assert.equal(info.channels, 3);
  const at = (x, y) => {
    const offset = 3 * (Math.round(y) * info.width + Math.round(x));
    return [...data.subarray(offset, offset + 3)];
  };
  return { width: info.width, height: info.height, rgb: data, at };
}

/** The picture shows `colour` (#rrggbb) at a point. */
function assertColour(picture, x, y, colour, tolerance = JPEG_TOLERANCE) {
  const found = picture.at(x, y);
  const off = Math.max(...parse(colour).map((channel, index) => Math.abs(channel - found[index])));
  assert.ok(
    off <= tolerance,
    `at ${x}, ${y} of ${picture.width}x${picture.height}: rgb(${found}) instead of ${colour}`,
  );
}

/** Every pixel of the picture is `colour`. */
function assertAllOf(picture, colour, tolerance = JPEG_TOLERANCE) {
  for (let y = 0; y < picture.height; ++y) {
    for (let x = 0; x < picture.width; ++x) assertColour(picture, x, y, colour, tolerance);
  }
}

module.exports = { assertAllOf, assertColour, decode };
