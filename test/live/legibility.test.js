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

const words = `The quick brown fox jumps over the lazy dog; 0123456789 (){}[] <> #include @media
sphinx of black quartz, judge my vow: if (x != y && z >= 42) return "none"; // a comment
Pack my box with five dozen liquor jugs. ls -l /usr/share/doc | grep -i copyright | wc -l\n`;
const escaped = words.replace(/&/g, '&amp;').replace(/</g, '&lt;');

const article = `<h2>Words and words</h2><p>${escaped}</p>
<p><code>${'f(x) = x^2; '.repeat(9)}</code></p>`;

const style = `<!doctype html><meta charset="utf-8"><title>Text</title>
<style>
  body { background: ${PAPER}; margin: 60px 24px; }
  h2 { color: #1a4a8a; }
  code { color: #a02020; }
  figure { margin: 0; height: 36vh; background:
    radial-gradient(circle at 30% 40%, #e0a040, transparent 60%),
    linear-gradient(120deg, #204060, #80a0c0 60%, #204020); }
</style>`;

const scenes = {
  'a desktop with an article, a picture and a terminal': {
    page: `${style}<figure></figure>${article.repeat(4)}`,
    terminal: { columns: 80, rows: 24 },
    leastSsim: 0.99,
  },
  // One stroke beside the other, a pixel wide: the hardest case for averaging.
  'a desktop full of small text': {
    page: `${style}<style>body { font: 13px/1.4 serif; columns: 3; }</style>${article.repeat(30)}`,
    terminal: { columns: 150, rows: 70 },
    leastSsim: 0.985,
  },
};

/** A browser on the left half and a terminal on the right; both begin at the top. */
async function textDesktop(t, { page, terminal }, width, height) {
  const desktop = await startDesktop(t, { screen: `${width}x${height}x24`, manager: true });
  const half = width / 2;
  await startBrowser(t, desktop, {
    ...{ x: 0, y: 0, width: half, height, html: page, colour: PAPER },
    probe: { x: 12, y: height / 2 },
  });
  await startTerminal(t, desktop, {
    geometry: `${terminal.columns}x${terminal.rows}+${half}+0`,
    colour: '#fffff0',
    text: words.repeat(30),
    // Left of the last column, right of the text, which is shorter than any line here.
    probe: { x: half + 6 * terminal.columns - 12, y: 100 },
  });
  return desktop;
}

/** The same screen from the server, scaled by another program. */
async function referenceOf(screen, { width, height }) {
  const raw = { width: screen.width, height: screen.height, channels: 3 };
  const rgb = await sharp(screen.rgb, { raw })
    .resize(width, height, { kernel: 'lanczos3', fit: 'fill' })
    .raw()
    .toBuffer();
  return { rgb, width, height };
}

for (const [description, scene] of Object.entries(scenes)) {
  for (const [width, height] of [
    [1920, 1080],
    [3840, 2160],
  ]) {
    test(`${description} stays legible at ${width} x ${height}`, async (t) => {
      const { addon, painter } = await textDesktop(t, scene, width, height);
      const shot = await addon.captureDisplay([], 1);
      const reference = await referenceOf(await painter.grab(), shot);
      const similarity = ssim(await decode(shot.base64), reference);
      const usual = ssim(await decode((await addon.captureDisplay([])).base64), reference);
      t.diagnostic(`SSIM ${similarity.toFixed(4)}; at the default quality ${usual.toFixed(4)}`);
      assert.ok(similarity >= scene.leastSsim, `${similarity}`);
    });
  }
}
