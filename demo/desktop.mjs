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

/** Starts Xvfb, a window manager, a terminal, a GTK form and a browser; returns how to end them. */
export async function startDesktop() {
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
    for (const child of children.reverse()) {
      const ended = new Promise((resolve) => child.once('exit', resolve));
      if (child.pid === undefined || child.exitCode !== null || child.signalCode) continue;
      process.kill(-child.pid, 'SIGKILL');
      await ended;
    }
    rmSync(profile, { recursive: true, force: true, maxRetries: 10, retryDelay: 50 });
  }

  // What is in groups of its own does not see the terminal's interrupt.
  for (const signal of ['SIGINT', 'SIGTERM']) {
    process.once(signal, () => stop().finally(() => process.exit(1)));
  }
  try {
    process.env.DISPLAY = `:${await startServer(start)}`;
    startPrograms(start, profile);
    await until('three windows on the private desktop', 60, async () => {
      const { stdout } = await run('xprop', ['-root', '_NET_CLIENT_LIST']);
      return (stdout.match(/0x/g) ?? []).length >= 3;
    });
    return { stop };
  } catch (error) {
    await stop();
    throw error;
  }
}

/** The number of the display, which the server tells once it accepts connections. */
async function startServer(start) {
  const server = start(
    'Xvfb',
    ['-displayfd', '3', '-screen', '0', '1920x1080x24', '-noreset', '-nolisten', 'tcp'],
    { stdio: ['ignore', 'ignore', 'ignore', 'pipe'] },
  );
  let number = '';
  server.stdio[3].on('data', (data) => (number += data));
  await until('Xvfb', 20, () => number.endsWith('\n'));
  return number.trim();
}

function startPrograms(start, profile) {
  start('openbox', []);
  start('xterm', [
    ...['-fa', 'DejaVu Sans Mono', '-fs', '11', '-geometry', '92x24+40+40'],
    ...['-e', 'sh', '-c', 'ls -l --color=always /usr; echo; echo "A terminal."; exec sleep 1000'],
  ]);
  start('zenity', [
    ...['--forms', '--title=A GTK form', '--text=Who is there?'],
    ...['--add-entry=Name', '--add-entry=Town', '--add-calendar=Day'],
  ]);
  const page = pathToFileURL(path.join(here, 'page.html'));
  start('chromium', [
    // A page of our own in a container: no sandbox to set up, nothing to fetch.
    ...['--no-sandbox', '--test-type', '--disable-gpu', '--disable-dev-shm-usage'],
    ...['--no-first-run', '--disable-background-networking', '--disable-component-update'],
    ...['--disable-sync', `--user-data-dir=${profile}`],
    ...['--window-position=1130,140', '--window-size=770,560', `--app=${page}`],
  ]);
}
