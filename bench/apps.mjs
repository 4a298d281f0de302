// What questions about windows, applications and the clipboard cost, beside the floor that the
// protocol and GIO set and beside the tools that are usually started for them. Prints Markdown;
// docs/performance.md tells what it means.
import { spawn, spawnSync } from 'node:child_process';
import { mkdirSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import os from 'node:os';
import path from 'node:path';
import { createInterface } from 'node:readline';
import { fileURLToPath } from 'node:url';

import { startDesktop, until } from '../demo/desktop.mjs';
import { logos } from './desktops.mjs';
import { median, quantile } from './statistics.mjs';
import { number, printTable } from './tables.mjs';

const deskhand = createRequire(import.meta.url)('..');
const here = path.dirname(fileURLToPath(import.meta.url));
const floorProgram = path.join(here, '..', 'build', 'bench', 'apps_floor');

const ROUNDS = 20;
const COUNT = 50; // of calls in each round
const SLOW_COUNT = 5; // of what takes longer
const WINDOWS = 50;
const ENTRIES = 500;
const KIB = 'k'.repeat(1024);

/** So many programs, all of which there are, in a folder for applications. */
function writeEntries(folder) {
  const applications = path.join(folder, 'applications');
  mkdirSync(applications);
  for (let index = 0; index < ENTRIES; ++index) {
    const entry = ['[Desktop Entry]', 'Type=Application', `Name=Program ${index}`, 'Exec=true'];
    entry.push(`Comment=The program of number ${index}`, 'Icon=program', 'Categories=Utility;', '');
    writeFileSync(path.join(applications, `program-${index}.desktop`), entry.join('\n'));
  }
}

function startFloor() {
  const child = spawn(floorProgram, { stdio: ['pipe', 'pipe', 'inherit'] });
  const lines = createInterface({ input: child.stdout })[Symbol.asyncIterator]();
  return {
    async ask(request, count) {
      child.stdin.write(`${request} ${count}\n`);
      return (await lines.next()).value.trim().split(' ').map(Number);
    },
    end: () => child.kill('SIGKILL'),
  };
}

/** What times so many calls, one after the other, in microseconds. */
const calls = (count, call) => async () => {
  const times = [];
  for (let index = 0; index < count; ++index) {
    const start = performance.now();
    await call();
    times.push(1000 * (performance.now() - start));
  }
  return times;
};

function program(command, args) {
  return calls(SLOW_COUNT, () => {
    const { status, error } = spawnSync(command, args);
    if (status !== 0) throw error ?? new Error(`${command} ended with ${status}`);
  });
}

/** Puts a text of a kilobyte onto the clipboard, as another program. */
async function offerText() {
  const child = spawn('xclip', ['-quiet', '-selection', 'clipboard'], {
    stdio: ['pipe', 'ignore', 'ignore'],
  });
  child.stdin.end(KIB);
  await until('a text on the clipboard', 10, () => deskhand.readClipboard() === KIB);
  return () => child.kill('SIGKILL');
}

/** Medians of the rounds in which all take their turn, by name. */
async function measure(contestants) {
  const rounds = new Map(Object.keys(contestants).map((name) => [name, []]));
  for (const time of Object.values(contestants)) await time(); // warm
  for (let round = 0; round < ROUNDS; ++round) {
    for (const [name, time] of Object.entries(contestants)) {
      rounds.get(name).push(median(await time()));
    }
  }
  return rounds;
}

function printCalls(title, rounds) {
  const [[, first]] = rounds;
  console.log(`\n### ${title}\n`);
  printTable(
    ['', '× the first', 'quartiles', 'µs'],
    [...rounds].map(([name, times]) => {
      const ratios = times.map((time, round) => time / first[round]);
      const [low, middle, high] = [0.25, 0.5, 0.75].map((q) => number(quantile(ratios, q)));
      return [name, middle, `${low}–${high}`, number(median(times))];
    }),
  );
  console.log();
}

/** How many times as long one takes as another in the same round; the median says whether it may. */
function printLimit(rounds, name, other, limit) {
  const ratio = median(rounds.get(name).map((time, round) => time / rounds.get(other)[round]));
  const verdict = ratio <= limit ? 'holds' : 'MISSED';
  console.log(`- ${name}: ${number(ratio)} × ${other}, limit ${limit}: ${verdict}`);
}

async function measureWindows(floor) {
  const { length } = deskhand.getWindowList();
  if (length !== WINDOWS) throw new Error(`${length} windows are listed, not ${WINDOWS}`);
  const [bare, each] = ['the bare round trips', 'each window asked'];
  const rounds = await measure({
    [bare]: () => floor.ask('trips', COUNT),
    [each]: () => floor.ask('windows', COUNT),
    getWindowList: calls(COUNT, () => deskhand.getWindowList()),
    appUnderPoint: calls(COUNT, () => deskhand.appUnderPoint(800, 400)),
    listRunningApps: calls(COUNT, () => deskhand.listRunningApps()),
    'wmctrl -lGpx': program('wmctrl', ['-lGpx']),
  });
  printCalls(`${WINDOWS} windows`, rounds);
  printLimit(rounds, 'getWindowList', bare, 2);
  printLimit(rounds, 'getWindowList', each, 2);
  printLimit(rounds, 'getWindowList', 'wmctrl -lGpx', 0.1);
  printLimit(rounds, 'appUnderPoint', 'getWindowList', 1);
  printLimit(rounds, 'listRunningApps', 'getWindowList', 2);
}

async function measureClipboard() {
  const end = await offerText();
  const rounds = await measure({
    'readClipboard': calls(COUNT, () => deskhand.readClipboard()),
    'xclip -o': program('xclip', ['-selection', 'clipboard', '-o']),
  });
  printCalls('1 KiB of text that another program has', rounds);
  printLimit(rounds, 'readClipboard', 'xclip -o', 0.1);
  end();
}

async function measureEntries(floor) {
  const { length } = await deskhand.listInstalledApps();
  if (length !== ENTRIES) throw new Error(`${length} entries are listed, not ${ENTRIES}`);
  const gio = "GIO's own enumeration";
  const rounds = await measure({
    [gio]: () => floor.ask('entries', SLOW_COUNT),
    listInstalledApps: calls(SLOW_COUNT, () => deskhand.listInstalledApps()),
  });
  printCalls(`${ENTRIES} installed applications`, rounds);
  printLimit(rounds, 'listInstalledApps', gio, 2);
}

const load = os.loadavg()[0].toFixed(2);
console.log(`${os.cpus().length} cores, load ${load} before the start, Node.js ${process.version}`);
const desktop = await startDesktop({ startPrograms: logos(WINDOWS) });
const data = mkdtempSync(path.join(os.tmpdir(), 'deskhand-bench-'));
try {
  writeEntries(data);
  // For all that starts from here on, which is no program with windows.
  process.env.XDG_DATA_HOME = data;
  process.env.XDG_DATA_DIRS = path.join(data, 'none');
  const floor = startFloor();
  await measureWindows(floor);
  await measureClipboard();
  await measureEntries(floor);
  floor.end();
} finally {
  rmSync(data, { recursive: true });
  await desktop.stop();
}
