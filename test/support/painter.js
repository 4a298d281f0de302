'use strict';

const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { atEnd } = require('./cleanup.js');
const { startLineProgram } = require('./line_program.js');

const root = path.join(__dirname, '..', '..');
const program =
  process.env.DESKHAND_PAINTER ?? path.join(root, 'build', 'unit', 'test', 'support', 'painter');

function hex(colour) {
  return colour.replace('#', '');
}

/** AARRGGBB of a colour (#rrggbb) that lets the rest of what is behind through, premultiplied. */
function premultiplied(colour, alpha) {
  const channels = hex(colour).match(/../g);
  const scaled = channels.map((channel) => Math.round(alpha * Number.parseInt(channel, 16)));
  return Buffer.from([Math.round(alpha * 255), ...scaled]).toString('hex');
}

/** The arguments of painter.c's `window`. */
function windowWords(name, wish) {
  const { x, y, width, height, colour, wmClass = '-', managed = true } = wish;
  const { alpha, border, ring, paints, transientFor } = wish;
  const pixel = alpha === undefined ? hex : (any) => premultiplied(any, alpha);
  const words = [name, x, y, width, height, pixel(colour), wmClass];
  words.push(managed ? 'managed' : 'unmanaged');
  if (alpha !== undefined) words.push('argb');
  if (ring) words.push('ring');
  if (border) words.push(`border=${border.width},${pixel(border.colour)}`);
  if (paints) words.push(paints);
  if (transientFor) words.push(`for=${transientFor}`);
  return words;
}

/** A folder that is gone when the test ends. */
function temporaryFolder(t) {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'deskhand-test-'));
  atEnd(t, () => fs.rmSync(folder, { recursive: true, force: true, maxRetries: 5 }));
  return folder;
}

/** A binary PPM file with 8 bits a colour, as painter.c writes it. */
function readPpm(file) {
  const bytes = fs.readFileSync(file);
  const [header, width, height] = /^P6\n(\d+) (\d+)\n255\n/.exec(bytes.toString('latin1', 0, 40));
  return { width: Number(width), height: Number(height), rgb: bytes.subarray(header.length) };
}

/** Paints on a server; see painter.c. Each function resolves when its effect is on the screen. */
function startPainter(t, env) {
  const ask = startLineProgram(t, program, [], env);
  /** What the answer says besides "ok". */
  const order = async (...words) => {
    const [verdict, ...rest] = (await ask(...words)).split(' ');
    if (verdict !== 'ok') throw new Error(`the painter cannot do "${words.join(' ')}": ${verdict}`);
    return rest.join(' ');
  };
  return {
    /**
     * `wmClass` is 'instance/class'; a window that is not managed overrides the redirection.
     * `alpha` gives it an alpha channel, `border` is { width, colour }, `ring` cuts a hole into it.
     * `paints`: 'nothing', 'once', 'asked' or 'frame' for a window without a background.
     * `transientFor`: the name of a window here, or the `id` of one of another painter.
     */
    window: (name, wish) => order('window', ...windowWords(name, wish)),
    /** '0x...' */
    id: (name) => order('id', name),
    move: (name, x, y) => order('move', name, x, y),
    resize: (name, width, height) => order('resize', name, width, height),
    show: (name) => order('show', name),
    lower: (name) => order('lower', name),
    raise: (name) => order('raise', name),
    forge: (name) => order('forge', name),
    focus: (name) => order('focus', name),
    activate: (name) => order('activate', name),
    destroy: (name) => order('destroy', name),
    hide: (name) => order('hide', name),
    iconify: (name) => order('iconify', name),
    property: (name, atom, text) => order('property', name, atom, text),
    embed: (name, parent) => order('embed', name, parent),
    cursor: (name, colour) => order('cursor', name, hex(colour)),
    pointer: (x, y) => order('pointer', x, y),
    background: (colour) => order('background', hex(colour)),
    /** Two colours in turn; announced: by the properties that compositing managers look at. */
    wallpaper: (first, second, { announced = true } = {}) =>
      order('wallpaper', hex(first), hex(second), announced ? 'announced' : 'silent'),
    /** Resolves when what had been exposed is painted. */
    settle: () => order('settle'),
    /** Changes windows like `wish`, inside of its rectangle, until calm(); steady: they stay. */
    storm: (seed, wish, { steady = false } = {}) =>
      order('storm', seed, ...windowWords('storm', wish), ...(steady ? ['steady'] : [])),
    /** Ends the storm; resolves with the number of its changes. */
    calm: async () => Number(await order('calm')),
    manage: () => order('manage'),
    isComposited: async () => (await ask('composited')) === 'ok',
    isManaged: async () => (await ask('managed')) === 'ok',
    /** The screen as the server has it: { width, height, rgb }. */
    async grab() {
      const file = path.join(temporaryFolder(t), 'screen.ppm');
      await order('grab', file);
      return readPpm(file);
    },
  };
}

module.exports = { startPainter, temporaryFolder };
