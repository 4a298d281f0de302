'use strict';

// Programs that receive input, each of another family: a browser's page, a GTK dialog, a terminal.
// Each has `program`, the process; focus(), which resolves when it has the keyboard; begin(), which
// forgets the text so far; hasStarted(), whether text has come since; and finish(), which resolves
// with the text when all that was typed has come.
const { execFile } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { promisify } = require('node:util');
const { KEY } = require('./keyboard.js');
const { startPageServer } = require('./page_server.js');
const { temporaryFolder } = require('./painter.js');
const { hasExited, start } = require('./processes.js');
const { openBrowser, settles } = require('./programs.js');
const { until } = require('./until.js');

const run = promisify(execFile);

const START_MS = 60_000;
const TEXT_MS = 60_000;

/** Resolves with the identifier of a program's window with that title when it is on the screen. */
async function windowOf(desktop, program, title) {
  const search = ['search', '--onlyvisible', '--name', `^${title}$`];
  const find = async () => {
    if (hasExited(program)) throw new Error(`a program has ended: ${program.errors()}`);
    const { stdout } = await run('xdotool', search, { env: desktop.env }).catch(() => ({}));
    return stdout?.trim().split('\n').at(-1);
  };
  const number = await until(find, `${title} is on the screen`, { timeoutMs: START_MS });
  return `0x${Number(number).toString(16)}`;
}

async function hasFocus(desktop, id) {
  const { stdout } = await run('xdotool', ['getwindowfocus', '-f'], { env: desktop.env });
  return Number(stdout) === Number(id);
}

/** Gives the keyboard to a window, also against a window manager that thinks otherwise. */
async function focusWindow(desktop, id) {
  await until(async () => {
    await desktop.painter.focus(id);
    return hasFocus(desktop, id);
  }, `${id} has the keyboard`);
}

/**
 * A page in a browser, input_page.html. `events` are those of the page so far; `ask` asks it for
 * the value of an expression.
 */
async function startPage(t, desktop, { x = 0, y = 0 } = {}) {
  const server = await startPageServer(t);
  const { ask, events, url } = server;
  const folder = temporaryFolder(t);
  const place = { x, y, width: 770, height: 600 };
  const program = openBrowser(t, desktop, { ...place, url, folder });
  const id = await windowOf(desktop, program, 'deskhand input page');
  await ask('document.readyState');
  await settles(desktop);
  let first = 0;
  const page = {
    ...{ name: 'a page', program, id, ask, events },
    /** Also sees to it that the keyboard is that of the text area, or of no element. */
    async focus(element = '#text') {
      await focusWindow(desktop, id);
      await until(() => ask('document.hasFocus()'), 'the page has the keyboard');
      const focused = element ? `document.querySelector('${element}')` : 'document.body';
      await ask(element ? `${focused}.focus()` : 'document.activeElement.blur()');
      const isFocused = `document.activeElement === ${focused}`;
      await until(() => ask(isFocused), `${focused} has the keyboard`);
    },
    /** Forgets the events so far; they are no longer in since(). */
    async forget() {
      await page.settle();
      first = events.length;
    },
    /** The events since forget() of these types; settle()'s own are none. */
    since: (...types) =>
      events.slice(first).filter(({ type, code }) => types.includes(type) && code !== 'Pause'),
    /** Resolves when the page has seen all that was done with mouse and keys until now. */
    async settle() {
      await focusWindow(desktop, id);
      const before = events.length;
      await desktop.keyboard.tap(KEY.pause);
      const isSentinel = ({ type, code }) => type === 'keyup' && code === 'Pause';
      const hasCome = () => events.slice(before).some(isSentinel);
      await until(hasCome, 'the page has seen all', { timeoutMs: TEXT_MS });
      await ask('0');
    },
    /** The place on the screen of a place in the page. */
    async onScreen(clientX, clientY) {
      const [left, top] = await page.origin();
      return [left + clientX, top + clientY];
    },
    /** The centre of an element on the screen. */
    async centre(selector) {
      const box = `document.querySelector('${selector}').getBoundingClientRect()`;
      const { x: left, y: top, width, height } = await ask(`${box}.toJSON()`);
      return page.onScreen(Math.round(left + width / 2), Math.round(top + height / 2));
    },
    /** Where on the screen the page begins. */
    async origin() {
      page.corner ??= await findOrigin(desktop, page);
      return page.corner;
    },
    async begin() {
      await page.focus();
      await ask("document.querySelector('#text').value = ''");
      await page.forget();
    },
    hasStarted: () => page.since('input').length > 0,
    async finish() {
      await page.settle();
      return ask("document.querySelector('#text').value");
    },
  };
  return page;
}

/** Tells from an event how the page lies on the screen. */
async function findOrigin({ painter }, page) {
  const known = page.events.length;
  let x = 300;
  const move = await until(async () => {
    await painter.pointer(++x, 320);
    return page.events.slice(known).findLast(({ type }) => type === 'mousemove');
  }, 'the page sees the pointer');
  return [move.screenX - move.clientX, move.screenY - move.clientY];
}

/** A terminal in whose raw mode a program keeps what it reads. */
async function startTerminal(t, desktop, { geometry = '60x20+790+20' } = {}) {
  const file = path.join(temporaryFolder(t), 'typed');
  const keep = 'stty raw -echo; exec cat > "$0"';
  const title = 'deskhand terminal';
  const program = start(
    t,
    'xterm',
    ['-u8', '-T', title, '-geometry', geometry, '-e', 'sh', '-c', keep, file],
    { env: { ...desktop.env, LC_ALL: 'C.UTF-8', XMODIFIERS: '@im=none' } },
  );
  const id = await windowOf(desktop, program, title);
  await until(() => fs.existsSync(file), 'the terminal reads', { timeoutMs: START_MS });
  await settles(desktop);
  let first = 0;
  const bytes = () => fs.readFileSync(file).subarray(first);
  return {
    ...{ name: 'a terminal', program, id },
    focus: () => focusWindow(desktop, id),
    async begin() {
      await focusWindow(desktop, id);
      first += bytes().length;
    },
    hasStarted: () => bytes().length > 0,
    async finish() {
      await focusWindow(desktop, id);
      await desktop.keyboard.tap(KEY.escape);
      const hasCome = () => bytes().includes(0x1b);
      await until(hasCome, 'the terminal has read all', { timeoutMs: TEXT_MS });
      return bytes().toString('utf8', 0, bytes().indexOf(0x1b));
    },
  };
}

/** An entry field of GTK; begin() opens a new one, which finish() closes. */
function startEntry(t, desktop) {
  const title = 'deskhand entry';
  const entry = {
    name: 'an entry',
    program: undefined,
    focus: () => focusWindow(desktop, entry.id),
    async begin() {
      const folder = temporaryFolder(t);
      const settings = { HOME: folder, NO_AT_BRIDGE: '1', GTK_THEME: 'Adwaita' };
      // It writes the text out in the locale's encoding.
      const env = { ...desktop.env, ...settings, LC_ALL: 'C.UTF-8' };
      const args = ['--entry', `--title=${title}`, '--text=Text'];
      entry.program = start(t, 'zenity', args, { env, stdio: ['ignore', 'pipe', 'pipe'] });
      entry.text = '';
      entry.program.stdout.setEncoding('utf8').on('data', (text) => (entry.text += text));
      entry.id = await windowOf(desktop, entry.program, title);
      await settles(desktop);
      await entry.focus();
    },
    /** It does not tell before its end. */
    hasStarted: () => true,
    async finish() {
      await entry.focus();
      await desktop.keyboard.tap(KEY.return);
      await until(() => entry.text.endsWith('\n'), 'the entry is closed', { timeoutMs: TEXT_MS });
      return entry.text.slice(0, -1);
    },
  };
  return entry;
}

module.exports = { startEntry, startPage, startTerminal };
