// A private desktop with real programs on it, for machines that have no screen.
import { execFile, spawn } from 'node:child_process';
import { mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { setTimeout as delay } from 'node:timers/promises';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { promisify } from 'node:util';

const run = promisify(execFile);
const here = path.dirname(fileURLToPath(import.meta.url));

/** Calls `check` until it gives something true; throws after `seconds`. */
export async function until(what, seconds, check) {
  const deadline = Date.now() + seconds * 1000;
  for (;;) {
    const result = await check();
    if (result) return result;
    if (Date.now() > deadline) throw new Error(`${what}: not within ${seconds} seconds`);
    await delay(100);
  }
}

/**
 * Starts Xvfb, a window manager and programs; returns how to end them. `density`: pixels per edge
 * of what is one pixel on a screen of 1920 x 1080. `startPrograms` gives the number of their windows.
 */
export async function startDesktop({
  density = 1,
  startPrograms = startTerminalFormAndBrowser,
} = {}) {
  const children = [];
  const profile = mkdtempSync(path.join(tmpdir(), 'deskhand-demo-'));

  /** In a group of its own, so that what it starts ends with it. */
  function start(command, args, options = {}) {
    const child = spawn(command, args, { stdio: 'ignore', detached: true, ...options });
    child.on('error', (error) => console.error(`${command}: ${error.message}`));
    children.push(child);
    return child;
  }

  async function stop() {
    for (const child of [...children].reverse()) {
      const ended = new Promise((resolve) => child.once('exit', resolve));
      if (child.pid === undefined || child.exitCode !== null || child.signalCode) continue;
      process.kill(-child.pid, 'SIGKILL');
      await ended;
    }
    rmSync(profile, { recursive: true, force: true, maxRetries: 10, retryDelay: 50 });
    for (const signal of signals) process.off(signal, interrupt);
  }

  // What is in groups of its own does not see the terminal's interrupt.
  const signals = ['SIGINT', 'SIGTERM'];
  const interrupt = () => stop().finally(() => process.exit(1));
  for (const signal of signals) process.once(signal, interrupt);
  try {
    process.env.DISPLAY = `:${await startServer(start, density)}`;
    start('openbox', []);
    const windows = startPrograms({ start, profile, density });
    await until(`${windows} windows on the private desktop`, 60, async () => {
      const { stdout } = await run('xprop', ['-root', '_NET_CLIENT_LIST']);
      return (stdout.match(/0x/g) ?? []).length >= windows;
    });
    return { stop };
  } catch (error) {
    await stop();
    throw error;
  }
}

/** The number of the display, which the server tells once it accepts connections. */
async function startServer(start, density) {
  const screen = `${1920 * density}x${1080 * density}x24`;
  const server = start(
    'Xvfb',
    ['-displayfd', '3', '-screen', '0', screen, '-noreset', '-nolisten', 'tcp'],
    { stdio: ['ignore', 'ignore', 'ignore', 'pipe'] },
  );
  let number = '';
  server.stdio[3].on('data', (data) => (number += data));
  await until('Xvfb', 20, () => number.endsWith('\n'));
  return number.trim();
}

/**
 * Returns the number of windows that they open, as each `startPrograms` does. `url`: of the page in
 * the browser.
 */
export function startTerminalFormAndBrowser({
  start,
  profile,
  density,
  url = pathToFileURL(path.join(here, 'page.html')),
}) {
  const corner = Math.round(40 * density);
  start('xterm', [
    ...['-fa', 'DejaVu Sans Mono', '-fs', `${11 * density}`],
    ...['-geometry', `92x24+${corner}+${corner}`],
    ...['-e', 'sh', '-c', 'ls -l --color=always /usr; echo; echo "A terminal."; exec sleep infinity'],
  ]);
  // GTK scales its widgets by whole numbers, and its fonts by any.
  const widgetScale = Math.max(1, Math.floor(density));
  start(
    'zenity',
    [
      ...['--forms', '--title=A GTK form', '--text=Who is there?'],
      ...['--add-entry=Name', '--add-entry=Town', '--add-calendar=Day'],
    ],
    { env: { ...process.env, GDK_SCALE: widgetScale, GDK_DPI_SCALE: density / widgetScale } },
  );
  start('chromium', [
    // A page of our own in a container: no sandbox to set up, nothing to fetch.
    ...['--no-sandbox', '--test-type', '--disable-gpu', '--disable-dev-shm-usage'],
    ...['--no-first-run', '--disable-background-networking', '--disable-component-update'],
    ...['--disable-sync', `--user-data-dir=${profile}`],
    // Position and size are in units of the scale.
    ...[`--force-device-scale-factor=${density}`],
    ...['--window-position=1130,140', '--window-size=770,560', `--app=${url}`],
  ]);
  return 3;
}
