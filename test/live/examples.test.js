'use strict';

// Each program of examples/ does on a real desktop what it says.
const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { startApplications } = require('../support/applications.js');
const { startDesktop } = require('../support/desktop.js');
const { installExamples, root, runScript } = require('../support/examples.js');
const { startInputDesktop } = require('../support/input_desktop.js');
const { assertColour, decode } = require('../support/picture.js');
const { startTerminal } = require('../support/receivers.js');
const { until } = require('../support/until.js');

const GREY = '#808080';
const PINK = '#d81b60';
const GREEN = '#00a000';

function run(t, { env }, file, args, packages) {
  return runScript(t, env, installExamples(t, packages), file, args);
}

/** The picture in a file, decoded. */
function pictureIn(file) {
  return decode(fs.readFileSync(file).toString('base64'));
}

/** A desktop with a file for a picture. */
async function startStudio(t, options) {
  const desktop = await startDesktop(t, options);
  await desktop.painter.background(GREY);
  const folder = installExamples(t);
  const file = path.join(folder, 'picture.jpg');
  const take = (name, ...args) => runScript(t, desktop.env, folder, name, [file, ...args]).ends();
  return { ...desktop, file, take };
}

test('every example is run here', () => {
  const files = fs.readdirSync(path.join(root, 'examples')).filter((name) => /\.m?js$/.test(name));
  const tests = fs.readFileSync(__filename, 'utf8');
  for (const name of files) assert.ok(tests.includes(`'${name}'`), `${name} is not run`);
});

test('screenshot.js writes a picture of the main display', async (t) => {
  const { painter, file, take } = await startStudio(t, { screen: '1000x600x24' });
  await painter.window('pink', { x: 300, y: 200, width: 100, height: 100, colour: PINK });
  assert.match(await take('screenshot.js'), /1000 x 600 pixels of a display of 1000 x 600 points/);
  const picture = await pictureIn(file);
  assert.deepEqual([picture.width, picture.height], [1000, 600]);
  assertColour(picture, 350, 250, PINK);
  assertColour(picture, 100, 100, GREY);
});

test('screenshot.js says what is wrong where there is no display', async (t) => {
  const { env } = await startDesktop(t);
  const script = run(t, { env: { ...env, DISPLAY: ':59999' } }, 'screenshot.js', ['x.jpg']);
  assert.match(await script.fails(), /^Failed to get shareable content: cannot connect/);
});

test('with-run-loop.js goes before a program, which works as without it', async (t) => {
  const desktop = await startDesktop(t, { screen: '1000x600x24' });
  const folder = installExamples(t);
  const before = { ...desktop.env, NODE_OPTIONS: `--require=${path.join(folder, 'with-run-loop.js')}` };
  assert.match(await runScript(t, before, folder, 'screenshot.js').ends(), /1000 x 600 pixels/);
  assert.equal((await pictureIn(path.join(folder, 'screen.jpg'))).width, 1000);
});

test('find-and-click.mjs clicks on what it finds in a reduced picture', async (t) => {
  const desktop = await startDesktop(t, { manager: true, screen: '3000x2000x24' });
  const { addon, painter } = desktop;
  await painter.background(GREY);
  const place = { y: 1200, width: 200, height: 100 };
  await painter.window('found', { ...place, x: 1800, colour: PINK, wmClass: 'found/Found' });
  await painter.window('other', { ...place, x: 500, colour: GREEN, wmClass: 'other/Other' });
  await painter.activate('other');
  const isInFront = async (id) => (await addon.getFrontmostApp())?.bundleId === id;
  await until(() => isInFront('Other'), 'the other window is in front');

  const packages = { deskhand: root, sharp: path.join(root, 'node_modules', 'sharp') };
  const script = run(t, desktop, 'find-and-click.mjs', [PINK], packages);
  assert.match(await script.ends(), /^clicked at/);

  await until(() => isInFront('Found'), 'the click has brought its window to the front');
  const [window] = (await addon.getWindowList()).filter(({ bundleId }) => bundleId === 'Found');
  const { x, y } = await addon.getCursorPosition();
  // The frame has a title bar at its top, so the middle of the colour is a little lower.
  assert.ok(Math.abs(x - (window.x + window.w / 2)) <= 3, `x is ${x}`);
  assert.ok(Math.abs(y - (window.y + window.h - 50)) <= 8, `y is ${y}`);
});

test('find-and-click.mjs fails when the colour is nowhere', async (t) => {
  const desktop = await startDesktop(t);
  const packages = { deskhand: root, sharp: path.join(root, 'node_modules', 'sharp') };
  const script = run(t, desktop, 'find-and-click.mjs', [PINK], packages);
  assert.match(await script.fails(), /this colour is nowhere on the screen/);
});

test('type-multilingual.js types all its lines into a terminal', async (t) => {
  const desktop = await startInputDesktop(t);
  const terminal = await startTerminal(t, desktop);
  await terminal.begin();
  await run(t, desktop, 'type-multilingual.js', ['0']).ends();
  const typed = await terminal.finish();
  const source = fs.readFileSync(path.join(root, 'examples', 'type-multilingual.js'), 'utf8');
  const lines = [...source.matchAll(/^ {2}'(.*)',$/gm)].map(([, line]) => line);
  assert.ok(lines.length >= 8, 'the example has its lines');
  assert.deepEqual(typed.split('\r').filter(Boolean), lines);
});

test('watch-windows.js reports windows that open and close', async (t) => {
  const desktop = await startDesktop(t);
  const { painter } = desktop;
  const place = { x: 10, y: 20, width: 200, height: 100, colour: GREEN };
  await painter.window('first', { ...place, wmClass: 'first/First' });
  const script = run(t, desktop, 'watch-windows.js');
  await script.says(/^\+ First \(process \d+\), 200 x 100 at 10,20$/m);
  await painter.window('second', { ...place, x: 300, wmClass: 'second/Second' });
  await script.says(/^\+ Second \(process \d+\), 200 x 100 at 300,20$/m);
  await painter.destroy('first');
  await script.says(/^- First /m);
  process.kill(script.child.pid, 'SIGINT');
  assert.equal((await script.ends()).trim().split('\n').length, 3);
});

test('clipboard-roundtrip.js gives its text to others until they copy something', async (t) => {
  const desktop = await startDesktop(t);
  const script = run(t, desktop, 'clipboard-roundtrip.js', ['Ünïcödé 👋']);
  await script.says(/^The text is on the clipboard/);
  assert.equal(await desktop.addon.readClipboard(), 'Ünïcödé 👋');
  await desktop.addon.writeClipboard('something else');
  assert.match(await script.ends(), /^now there is "something else"$/m);
});

test('open-and-hide.mjs opens an application by its name, hides it and shows it', async (t) => {
  const entry = { Name: 'A terminal', Exec: 'xterm -class Shown', StartupWMClass: 'Shown' };
  const scene = await startApplications(t, { manager: true, entries: { shown: entry } });
  const env = { ...scene.env, ...scene.folders.variables };
  const script = run(t, { env }, 'open-and-hide.mjs', ['A terminal', 2]);
  await script.says(/^hidden$/m);
  assert.deepEqual(await scene.windowIds(), []);
  await script.says(/^shown again$/m);
  await scene.showsExactly(['shown']);
  assert.match(await script.ends(), /^A terminal is shown\nopen, windows: 1$/m);
  // The terminal ends with its server.
});

test('open-and-hide.mjs fails for an application that there is not', async (t) => {
  const scene = await startApplications(t);
  const env = { ...scene.env, ...scene.folders.variables };
  const script = run(t, { env }, 'open-and-hide.mjs', ['No such thing']);
  assert.match(await script.fails(), /no application is called "No such thing"/);
});

test('region-at-2x.js keeps lines that a picture of the display blurs', async (t) => {
  const { painter, file, take } = await startStudio(t, { screen: '3840x2160x24' });
  const paper = { x: 1000, y: 500, width: 60, height: 40, colour: '#ffffff' };
  await painter.window('paper', { ...paper, wmClass: 'lines/Lines' });
  // Upright lines, a pixel wide and a pixel apart, each a window of its own.
  for (let x = 1010; x < 1040; x += 2) {
    const line = { x, y: 510, width: 1, height: 20, colour: '#000000' };
    await painter.window(`line${x}`, { ...line, managed: false });
  }
  /** How much black and white differ in the middle of the lines. */
  const contrast = (picture, toPixel) => {
    const xs = Array.from({ length: 40 }, (_, n) => toPixel(1020 + n / 4, 1000));
    const values = xs.map((x) => picture.at(Math.floor(x), Math.floor(toPixel(520, 500)))[1]);
    return Math.max(...values) - Math.min(...values);
  };

  assert.match(await take('region-at-2x.js'), /Lines, 120 x 80 pixels/);
  const close = await pictureIn(file);
  assert.deepEqual([close.width, close.height], [120, 80]);
  const sharp = contrast(close, (point, origin) => 2 * (point - origin));

  await take('screenshot.js');
  const far = await pictureIn(file);
  const blurred = contrast(far, (point) => (point * far.width) / 3840);
  assert.ok(sharp > 100 && blurred < 80, `sharp: ${sharp}, blurred: ${blurred}`);
});

test('leave-yourself-out.js shows what is behind an application', async (t) => {
  const { painter, file, take } = await startStudio(t, { screen: '1000x600x24' });
  const place = { x: 100, y: 100, width: 300, height: 200 };
  await painter.window('behind', { ...place, colour: GREEN, wmClass: 'behind/Behind' });
  await painter.window('front', { ...place, colour: PINK, wmClass: 'front/Front' });
  await painter.focus('front');

  assert.match(await take('leave-yourself-out.js'), /without Front$/m);
  assertColour(await pictureIn(file), 200, 200, GREEN);
  assert.match(await take('leave-yourself-out.js', 'Behind', 'Front'), /without Behind, Front$/m);
  assertColour(await pictureIn(file), 200, 200, GREY);
});

test('electron/main.js gives its page a picture of the desktop', async (t) => {
  const desktop = await startDesktop(t, { screen: '1000x600x24' });
  const { painter } = desktop;
  await painter.background(GREY);
  await painter.window('pink', { x: 300, y: 200, width: 100, height: 100, colour: PINK });
  const electron = path.join(root, 'test', 'support', 'electron');
  const script = run(t, desktop, 'electron/main.js', [], { deskhand: root, electron });
  const { page, picture } = JSON.parse(await script.ends());
  assert.ok(fs.existsSync(path.join(root, 'examples', 'electron', path.basename(page))));
  assert.match(picture, /^data:image\/jpeg;base64,/);
  const decoded = await decode(picture.split(',')[1]);
  assertColour(decoded, 350, 250, PINK);
  assertColour(decoded, 100, 100, GREY);
});
