'use strict';

const fs = require('node:fs');
const { displaysOf, serviced } = require('./native.js');
const { Failure } = require('./output.js');
const { collect, integer, quality, region, size } = require('./values.js');

/** The display that was asked for. The addon would take another one when it is not there. */
function chooseDisplay(displays, id) {
  if (id === undefined) return displays.find(({ isMain }) => isMain) ?? displays[0];
  const found = displays.find((display) => display.id === id);
  if (found) return found;
  const known = displays.map((display) => display.id).join(', ');
  throw new Failure(`there is no display ${id}`, `There is ${known}: see "deskhand displays".`);
}

/** A picture of the whole display, or of a region of it; { base64, width, height, ... }. */
function capture(addon, display, options) {
  const excluded = options.exclude ?? [];
  if (!options.region && !options.size) {
    return addon.captureDisplay(excluded, options.quality, display.id);
  }
  const { x, y, w, h } = options.region ?? { x: 0, y: 0, w: display.width, h: display.height };
  const pixels = (points) => Math.max(1, Math.round(points * display.scaleFactor));
  const target = options.size ?? addon.calculateTargetSize(pixels(w), pixels(h));
  return addon.captureRegion(
    ...[excluded, x, y, w, h, Math.max(1, target.width), Math.max(1, target.height)],
    ...[options.quality, display.id],
  );
}

/** Where the picture was taken, in points of the global desktop space. */
function areaOf(display, { x, y, w, h } = { x: 0, y: 0, w: display.width, h: display.height }) {
  return { x: display.originX + x, y: display.originY + y, w, h };
}

async function screenshot({ words: [file], options, json, load }) {
  const isPiped = file === '-';
  if (isPiped && json) {
    throw new Failure(
      'standard output cannot be both the picture and JSON',
      'Name a file for the picture.',
    );
  }
  const addon = load();
  const display = chooseDisplay(displaysOf(addon), options.display);
  const start = performance.now();
  const { base64, width, height } = await serviced(() => capture(addon, display, options));
  const milliseconds = Math.round(performance.now() - start);
  const picture = Buffer.from(base64, 'base64');
  if (isPiped) {
    process.stdout.write(picture);
    return { value: undefined };
  }
  fs.writeFileSync(file, picture);
  const area = areaOf(display, options.region);
  const place = `${area.w} x ${area.h} points at ${area.x},${area.y}`;
  return {
    value: {
      file,
      width,
      height,
      bytes: picture.length,
      displayId: display.id,
      area,
      milliseconds,
    },
    text: `${file}: ${width} x ${height} pixels, ${picture.length} bytes; shows ${place}`,
  };
}

module.exports = {
  name: 'screenshot',
  summary: 'take a picture of a display, as JPEG',
  description:
    'Takes a picture of a display, or of a region of it, and writes it as JPEG. It is reduced to a size ' +
    'budget, no edge above 1568 pixels, unless --size says otherwise.',
  words: [['<file>', 'where to write it; "-" is standard output']],
  options: [
    [
      '--display <id>',
      'which display (see "deskhand displays"); else the main one',
      { parse: integer(1, 2 ** 32 - 1) },
    ],
    [
      '--region <x,y,w,h>',
      'a part of it, in points from its own top-left corner',
      { parse: region },
    ],
    ['--size <WxH>', 'the size of the picture in pixels', { parse: size }],
    [
      '--exclude <bundleId>',
      'leave out all windows of this application; may be repeated',
      { parse: collect },
    ],
    ['--quality <q>', 'JPEG quality, above 0 and at most 1', { parse: quality, preset: 0.75 }],
  ],
  examples: [
    'deskhand screenshot screen.jpg',
    'deskhand screenshot --region 0,0,640,400 --quality 0.9 corner.jpg',
    'deskhand screenshot --size 320x200 small.jpg',
    'deskhand screenshot --exclude org.gnome.Terminal --exclude XTerm screen.jpg',
    'deskhand screenshot - | display -',
  ],
  run: screenshot,
};
