'use strict';

// Text on a real desktop stays legible when it is scaled down.
const assert = require('node:assert/strict');
const { test } = require('node:test');
const sharp = require('sharp');
const { startDesktop } = require('../support/desktop.js');
const { decode } = require('../support/picture.js');
const { startBrowser, startTerminal } = require('../support/programs.js');
const { ssim } = require('../support/ssim.js');

const PAPER = '#f4f1ea';
const LEAST_SSIM = 0.99;

const words = `The quick brown fox jumps over the lazy dog; 0123456789 (){}[] <> #include @media
sphinx of black quartz, judge my vow: if (x != y && z >= 42) return "none"; // a comment
Pack my box with five dozen liquor jugs. ls -l /usr/share/doc | grep -i copyright | wc -l\n`;

const page = `<!doctype html><title>Text</title>
<style>
  body { background: ${PAPER}; font: 13px/1.4 serif; margin: 60px 24px; columns: 3; }
  h2 { font: bold 17px sans-serif; color: #1a4a8a; }
  code { font: 12px monospace; color: #a02020; }
</style>
${`<h2>Words and words</h2><p>${words.replace(/[<>&]/g, ' ')}</p><p><code>${'f(x) = x^2; '.repeat(9)}\
</code></p>`.repeat(14)}`;

/** A desktop full of text: a browser on its left, a terminal on its right. */
async function textDesktop(t, width, height) {
  const desktop = await startDesktop(t, { screen: `${width}x${height}x24`, manager: true });
  const half = width / 2;
  await startBrowser(t, desktop, {
    ...{ x: 0, y: 0, width: half, height, html: page, colour: PAPER },
    probe: { x: 12, y: height / 2 },
  });
  await startTerminal(t, desktop, {
    geometry: `${Math.floor(half / 6) - 6}x${Math.floor(height / 13) - 6}+${half}+0`,
    colour: '#fffff0',
    text: words.repeat(60),
    probe: { x: width - 120, y: Math.floor(height / 2) },
  });
  // Out of the way: the reference is without it.
  await desktop.painter.pointer(width - 1, height - 1);
  return desktop;
}

/** The same screen from the server, scaled by another program. */
async function referenceOf(screen, { width, height }) {
  const channels = 3;
  const rgb = await sharp(screen.rgb, { raw: { width: screen.width, height: screen.height, channels } })
    .resize(width, height, { kernel: 'lanczos3', fit: 'fill' })
    .raw()
    .toBuffer();
  return { rgb, width, height };
}

for (const [width, height] of [
  [1920, 1080],
  [3840, 2160],
]) {
  test(`a desktop of ${width} x ${height} keeps its text: SSIM against Lanczos >= ${LEAST_SSIM}`, async (t) => {
    const { addon, painter } = await textDesktop(t, width, height);
    const shot = await addon.captureDisplay([], 1);
    const screen = await painter.grab();
    const reference = await referenceOf(screen, shot);
    const similarity = ssim(await decode(shot.base64), reference);
    const usual = ssim(await decode((await addon.captureDisplay([])).base64), reference);
    t.diagnostic(`SSIM ${similarity.toFixed(4)}; at the default quality ${usual.toFixed(4)}`);
    assert.ok(similarity >= LEAST_SSIM, `${similarity}`);
  });
}
