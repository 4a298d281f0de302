'use strict';

const path = require('node:path');
const { pathToFileURL } = require('node:url');
const fs = require('node:fs');
const { temporaryFolder } = require('./painter.js');
const { hasExited, start } = require('./processes.js');
const { until } = require('./until.js');

/** Resolves when a point of the screen has a colour (#rrggbb) exactly. */
async function shows({ painter }, program, { x, y, colour }) {
  const wanted = Number.parseInt(colour.slice(1), 16);
  await until(
    async () => {
      if (hasExited(program)) throw new Error(`a program has ended: ${program.errors()}`);
      const { rgb, width } = await painter.grab();
      return rgb.readUIntBE(3 * (y * width + x), 3) === wanted;
    },
    `${x}, ${y} of the screen is ${colour}`,
    { timeoutMs: 30_000 },
  );
}

/** Resolves when nothing on the screen changes any more. */
async function settles({ painter }) {
  let last = await painter.grab();
  await until(async () => {
    const now = await painter.grab();
    const isSame = now.rgb.equals(last.rgb);
    last = now;
    return isSame;
  }, 'the screen stands still');
}

/** A terminal that shows `text` on `colour`; resolves when it is on the screen. */
async function startTerminal(
  t,
  desktop,
  { geometry, probe, colour = '#fffff0', text = '', args = [] },
) {
  const file = path.join(temporaryFolder(t), 'text');
  fs.writeFileSync(file, text);
  const program = start(
    t,
    'xterm',
    [
      ...['-geometry', geometry, '-bg', colour, '-fg', 'black', ...args],
      ...['-e', 'tail', '-n', '+1', '-f', file],
    ],
    { env: desktop.env },
  );
  await shows(desktop, program, { ...probe, colour });
  await settles(desktop);
  return program;
}

/** Starts a browser with a page, by its address, in a window without controls. */
function openBrowser(t, desktop, { x, y, width, height, url, folder }) {
  return start(
    t,
    'chromium',
    [
      ...['--no-sandbox', '--disable-gpu', '--no-first-run', '--disable-background-networking'],
      ...['--disable-component-update', '--disable-sync', '--disable-breakpad', '--noerrdialogs'],
      `--user-data-dir=${path.join(folder, 'profile')}`,
      `--window-position=${x},${y}`,
      `--window-size=${width},${height}`,
      `--app=${url}`,
    ],
    { env: { ...desktop.env, HOME: folder, XDG_CONFIG_HOME: folder, XDG_CACHE_HOME: folder } },
  );
}

/** A browser that shows `html` in a window without controls; resolves when it is on the screen. */
async function startBrowser(t, desktop, { html, probe, colour, ...place }) {
  const folder = temporaryFolder(t);
  const page = path.join(folder, 'page.html');
  fs.writeFileSync(page, html);
  const program = openBrowser(t, desktop, { ...place, url: pathToFileURL(page), folder });
  await shows(desktop, program, { ...probe, colour });
  await settles(desktop);
  return program;
}

/** An icon of one grey pixel. */
const ICON = '/* XPM */ static char *icon[] = { "1 1 1 1", "a c #808080", "a" };\n';

/** A window of GTK with `text` in it; resolves when it is on the screen. */
async function startDialog(t, desktop, { width, height, text }) {
  const folder = temporaryFolder(t);
  const file = path.join(folder, 'text');
  const icon = path.join(folder, 'icon.xpm');
  fs.writeFileSync(file, text);
  fs.writeFileSync(icon, ICON);
  const before = await desktop.painter.grab();
  const program = start(
    t,
    'zenity',
    [
      ...['--text-info', `--filename=${file}`, `--window-icon=${icon}`],
      ...[`--width=${width}`, `--height=${height}`],
    ],
    { env: { ...desktop.env, HOME: folder, NO_AT_BRIDGE: '1', GTK_THEME: 'Adwaita' } },
  );
  await until(
    async () => {
      if (hasExited(program)) throw new Error(`a program has ended: ${program.errors()}`);
      return !(await desktop.painter.grab()).rgb.equals(before.rgb);
    },
    'the dialog is on the screen',
    { timeoutMs: 30_000 },
  );
  await settles(desktop);
  return program;
}

module.exports = { openBrowser, settles, startBrowser, startDialog, startTerminal };
