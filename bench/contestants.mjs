// Who takes part. Each gives the same: a JPEG of the whole screen, 4:2:0, quality 75, reduced to
// the wanted size, as base64. What only delivers pixels or another format is finished by sharp, as its
// users do. A function here loads the contestant and returns the function that takes one picture.
import { execFile } from 'node:child_process';
import { pbkdf2, randomBytes } from 'node:crypto';
import { existsSync, mkdtempSync, rmSync } from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { promisify } from 'node:util';

const require = createRequire(import.meta.url);
const run = promisify(execFile);

/** What sharp makes of `input` with sharp's own defaults: Lanczos, its number of threads. */
async function finish(input, { width, height }, raw) {
  const sharp = require('sharp');
  const jpeg = await sharp(input, raw ? { raw } : {})
    .resize(width, height, { fit: 'fill' })
    .jpeg({ quality: 75, chromaSubsampling: '4:2:0' })
    .toBuffer();
  return jpeg.toString('base64');
}

/**
 * Four bytes a pixel to the three of sharp's RGB, red at `red`. Pixels of an X server carry zeros
 * where sharp would see the opacity; dropping the fourth byte here takes sharp half the time, too.
 */
function toRgb(pixels, red) {
  const rgb = Buffer.allocUnsafe((pixels.length / 4) * 3);
  const blue = 2 - red;
  for (let from = 0, to = 0; from < pixels.length; from += 4, to += 3) {
    rgb[to] = pixels[from + red];
    rgb[to + 1] = pixels[from + 1];
    rgb[to + 2] = pixels[from + blue];
  }
  return rgb;
}

/** Runs a program that writes a picture to its standard output. */
async function output(command, args) {
  const { stdout } = await run(command, args, { encoding: 'buffer', maxBuffer: 2 ** 28 });
  return stdout;
}

function loadDeskhand(excluded) {
  const deskhand = require('..');
  // A host looks at the displays first; what that leaves to the first capture is measured as such.
  deskhand.listDisplays();
  return async () => (await deskhand.captureDisplay(excluded)).base64;
}

/**
 * No picture, but promises of text as long as one, made beside the JavaScript thread as pictures are:
 * what remains in memory after many of them is Node.js's own.
 */
function loadNoPicture() {
  const takeBytes = promisify(randomBytes);
  return async () => (await takeBytes(77_000)).toString('base64');
}

/**
 * Nothing but a promise that takes about as long, in Node's own pool of threads: what then keeps the
 * JavaScript thread busy is Node.js's own.
 */
function loadEmptyPromise() {
  const derive = promisify(pbkdf2);
  return async () => {
    await derive('password', 'salt', 6000, 64, 'sha512');
    return null;
  };
}

// Grabs: functions that return { pixels, width, height, red }.

function loadRobotjs() {
  const robot = require('robotjs');
  // It would try display 0 first.
  robot.setXDisplayName(process.env.DISPLAY);
  return () => {
    const { image, width, height } = robot.screen.capture();
    return { pixels: image, width, height, red: 2 };
  };
}

function loadNutJs() {
  const { screen } = require('@nut-tree-fork/nut-js');
  return async () => {
    const { data, width, height } = await screen.grab();
    return { pixels: data, width, height, red: 2 };
  };
}

function loadNodeScreenshots() {
  const { Monitor } = require('node-screenshots');
  const monitor = Monitor.all()[0];
  return async () => {
    const image = await monitor.captureImage();
    return { pixels: await image.toRaw(), width: image.width, height: image.height, red: 0 };
  };
}

function withSharp(grab, size) {
  return async () => {
    const { pixels, width, height, red } = await grab();
    return finish(toRgb(pixels, red), size, { width, height, channels: 3 });
  };
}

/** Nothing that a caller could send on, but the least that the package costs. */
function alone(grab, { screen }) {
  return async () => {
    const { width, height } = await grab();
    if (width !== screen.width || height !== screen.height) {
      throw new Error(`its grab has ${width} × ${height} pixels`);
    }
    return null;
  };
}

/** scrot cannot write to a pipe of ours; this file is in memory where /dev/shm is. */
function loadScrot(size) {
  const folder = mkdtempSync(path.join(existsSync('/dev/shm') ? '/dev/shm' : tmpdir(), 'bench-'));
  process.on('exit', () => rmSync(folder, { recursive: true, force: true }));
  const file = path.join(folder, 'shot.png');
  return async () => {
    await run('scrot', ['--overwrite', '--pointer', '--quality', '1', file]);
    return finish(file, size);
  };
}

export const noPicture = 'no picture';
export const emptyPromise = 'an empty promise';

export const contestants = {
  deskhand: () => loadDeskhand([]),
  [noPicture]: loadNoPicture,
  [emptyPromise]: loadEmptyPromise,
  'deskhand, one application left out': () => loadDeskhand(['XLogo']),
  'robotjs + sharp': (size) => withSharp(loadRobotjs(), size),
  'robotjs, raw grab alone': (size) => alone(loadRobotjs(), size),
  'nut-js + sharp': (size) => withSharp(loadNutJs(), size),
  'nut-js, raw grab alone': (size) => alone(loadNutJs(), size),
  'node-screenshots + sharp': (size) => withSharp(loadNodeScreenshots(), size),
  'node-screenshots, raw grab alone': (size) => alone(loadNodeScreenshots(), size),
  'screenshot-desktop + sharp': (size) => {
    const screenshot = require('screenshot-desktop');
    return async () => finish(await screenshot({ format: 'jpg' }), size);
  },
  // The fastest lossless format of each program that sharp can read; with the pointer, if it can.
  'scrot + sharp': loadScrot,
  'maim + sharp': (size) => async () =>
    finish(await output('maim', ['--format=png', '--quality=1']), size),
  'import + sharp': (size) => async () => {
    const pixels = await output('import', ['-window', 'root', '-depth', '8', 'rgb:-']);
    return finish(pixels, size, { ...size.screen, channels: 3 });
  },
};

export const peers = Object.keys(contestants).filter(
  (name) => ![noPicture, emptyPromise].includes(name) && !name.startsWith('deskhand'),
);

/** Their pictures do not show what the others' show. */
export const showsLess = (name) => name === 'deskhand, one application left out';
