'use strict';

// Real programs: a terminal is left out of the picture, and what it covers can be read.
const assert = require('node:assert/strict');
const { execFile } = require('node:child_process');
const { describe, test } = require('node:test');
const { promisify } = require('node:util');
const { startDesktop } = require('../support/desktop.js');
const { decode } = require('../support/picture.js');
const { SECRET, assertNoSecret, assertSame, secretPixels } = require('../support/left_out.js');
const { startBrowser, startDialog, startTerminal } = require('../support/programs.js');
const { ssim } = require('../support/ssim.js');
const { until } = require('../support/until.js');

const run = promisify(execFile);

const PAPER = '#f0f8ff';
const LINES = 'The quick brown fox jumps over the lazy dog. 0123456789';

/** Where the terminal covers the others, away from frames. */
const COVERED = { x: 130, y: 150, width: 300, height: 160 };

async function startBehind(t, desktop, name) {
  const place = { x: 60, y: 60, width: 560, height: 400 };
  if (name === 'a browser') {
    const text = Array(30).fill(`<p style="margin: 2px; color: black">${LINES}</p>`).join('');
    const html = `<body style="background: ${PAPER}; font: 13px monospace">${text}`;
    await startBrowser(t, desktop, { ...place, html, colour: PAPER, probe: { x: 600, y: 430 } });
  } else {
    const text = Array(30).fill(LINES).join('\n');
    await startDialog(t, desktop, { width: 560, height: 400, text });
  }
}

async function captureCovered({ addon }, excluded) {
  const { x, y, width, height } = COVERED;
  const { base64 } = await addon.captureRegion(excluded, x, y, width, height, width, height, 1);
  return decode(base64);
}

/** How much of a picture is text: the part of its pixels that are dark. */
function darkShare({ rgb }) {
  let dark = 0;
  for (let byte = 0; byte < rgb.length; byte += 3) dark += rgb[byte + 1] < 100;
  return (3 * dark) / rgb.length;
}

describe('a terminal is left out', () => {
  for (const manager of [false, true]) {
    for (const name of ['a browser', 'a GTK program']) {
      const surroundings = manager ? ', under a window manager' : '';
      test(`in front of ${name}, whose text is there${surroundings}`, async (t) => {
        const desktop = await startDesktop(t, { manager, screen: '800x600x24' });
        await desktop.painter.pointer(790, 590);
        await startBehind(t, desktop, name);
        const before = await captureCovered(desktop, []);
        assertNoSecret(before);
        assert.ok(darkShare(before) > 0.03, 'there is text behind');
        await startTerminal(t, desktop, {
          geometry: '70x25+100+100',
          probe: { x: 300, y: 300 },
          colour: SECRET,
          text: 'nobody is to read this\n',
        });
        const picture = await captureCovered(desktop, ['debian-xterm']);
        assertNoSecret(picture);
        // A window that has lost the focus may draw its letters a little paler.
        const similarity = ssim(picture, before);
        assert.ok(similarity > (manager ? 0.85 : 0.99), `the similarity is ${similarity}`);
        const whole = await desktop.addon.captureDisplay(['debian-xterm'], 1);
        assertNoSecret(await decode(whole.base64));
        assert.ok(secretPixels(await captureCovered(desktop, [])) > 0, 'the terminal was there');
      });
    }
  }

  test('with its menu, which has no class', async (t) => {
    const desktop = await startDesktop(t, { screen: '800x600x24' });
    const { env, painter, addon } = desktop;
    const pointer = { x: 330, y: 240 };
    await painter.wallpaper('#204060', '#206040');
    await painter.pointer(pointer.x, pointer.y);
    const take = async (excluded) => {
      const { base64 } = await addon.captureRegion(excluded, 0, 0, 800, 600, 800, 600, 1);
      return { base64, ...(await decode(base64)) };
    };
    const without = await take([]);
    await startTerminal(t, desktop, {
      geometry: '40x15+100+100',
      probe: { x: 200, y: 200 },
      colour: SECRET,
      args: ['-xrm', `XTerm*SimpleMenu*background: ${SECRET}`],
    });
    const alone = secretPixels(await painter.grab());
    await run('xdotool', ['keydown', 'ctrl', 'mousedown', '1'], { env });
    const isLarger = async () => secretPixels(await painter.grab()) > 1.2 * alone;
    await until(isLarger, 'the menu is beside the terminal');
    const picture = await take(['debian-xterm']);
    assertNoSecret(picture);
    // The pointer has another shape over the menu.
    const around = { x: pointer.x - 24, y: pointer.y - 24, width: 48, height: 48 };
    assertSame(picture, without, { tolerance: 6, except: around });
  });
});
