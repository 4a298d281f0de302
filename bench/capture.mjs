// What a screenshot costs: deskhand, a frozen reference and other packages, side by side on private
// desktops. Prints Markdown; docs/performance.md tells what it means.
import { existsSync } from 'node:fs';
import os from 'node:os';
import { parseArgs } from 'node:util';

import { emptyPromise, noPicture, peers } from './contestants.mjs';
import { logos, usualWithLogos, withDesktop } from './desktops.mjs';
import { breathe, startContestant } from './players.mjs';
import { runRounds } from './rounds.mjs';
import { median, quantile } from './statistics.mjs';
import { number, printRounds, printTable } from './tables.mjs';

const usage = `scripts/bench [options]
  --rounds N      rounds of each table (60)
  --captures N    captures over which memory is watched (1000)
  --long          the same as --captures 10000
  --only NAME     one part only: limits, peers, first, memory, pixels or windows; may be repeated`;

const leftOut = 'deskhand, one application left out';

function readOptions() {
  const { values } = parseArgs({
    options: {
      rounds: { type: 'string', default: '60' },
      captures: { type: 'string', default: '1000' },
      long: { type: 'boolean', default: false },
      only: { type: 'string', multiple: true, default: Object.keys(parts) },
      help: { type: 'boolean', default: false },
    },
  });
  const options = {
    rounds: Number(values.rounds),
    captures: values.long ? 10_000 : Number(values.captures),
  };
  const areCounts = Object.values(options).every((count) => Number.isInteger(count) && count > 0);
  const arePartNames = values.only.every((part) => part in parts);
  if (values.help || !areCounts || !arePartNames) {
    console.log(usage);
    process.exit(values.help ? 0 : 2);
  }
  return { ...options, only: values.only };
}

const sizeText = ({ width, height }) => `${width} × ${height}`;

function printLimit(what, value, limit, unit) {
  const verdict = value <= limit ? 'holds' : 'MISSED';
  console.log(`- ${what}: ${number(value)} ${unit}, limit ${limit} ${unit}: ${verdict}`);
}

async function blockedTimes(size, count) {
  const host = await startContestant('deskhand', size);
  const times = await host.blocked(count);
  await host.end();
  return times;
}

/** deskhand and the reference alone: nothing else that could slow one of them. */
async function measureLimits({ rounds }) {
  for (const { density, limit } of [
    { density: 1, limit: 0.75 },
    { density: 2, limit: 0.85 },
  ]) {
    await withDesktop({ density }, async (size) => {
      const result = await runRounds(['deskhand', emptyPromise], size, rounds);
      printRounds(`deskhand and A, ${sizeText(size.screen)}`, result);
      const [row, empty] = ['deskhand', emptyPromise].map((wanted) =>
        result.rows.find(({ name }) => name === wanted),
      );
      if (!row || !empty) return;
      console.log();
      printLimit('captureDisplay', row.ratio[0], limit, '× A');
      printLimit('JavaScript thread busy, nine times of ten', row.busyMs[1], 0.3, 'ms');
      const [own, nodes] = [row, empty].map(({ busyMs }) => busyMs.map(number).join(' and '));
      console.log(`- At the median and nine times of ten: ${own} ms; ${emptyPromise}: ${nodes} ms`);
      const blocked = await blockedTimes(size, rounds);
      const [middle, most] = [0.5, 0.9].map((q) => number(quantile(blocked, q)));
      console.log(`- Of that within deskhand's own code: ${middle} and ${most} ms`);
    });
  }
  await withDesktop({ startPrograms: usualWithLogos }, async (size) => {
    const result = await runRounds(['deskhand', leftOut], size, rounds);
    printRounds('One application of 10 windows left out, 1920 × 1080', result);
    const row = result.rows.find(({ name }) => name === leftOut);
    if (!row) return;
    console.log();
    printLimit('captureDisplay without an application', row.ratio[0], 1.1, '× A');
  });
}

async function measurePeers({ rounds }) {
  for (const density of [1, 2]) {
    await withDesktop({ density }, async (size) => {
      const result = await runRounds(['deskhand', ...peers], size, rounds);
      printRounds(`With other packages, ${sizeText(size.screen)}`, result);
    });
  }
}

/** Fresh processes, each of which has listed the displays before its first capture. */
async function measureFirst() {
  const processes = 15;
  const warm = 20;
  await withDesktop({}, async (size) => {
    const [firsts, ratios] = [[], []];
    for (let index = 0; index < processes; ++index) {
      const host = await startContestant('deskhand', size);
      const { ms: first } = await host.time();
      const times = [];
      for (let shot = 0; shot < warm; ++shot) {
        await breathe();
        times.push((await host.time()).ms);
      }
      await host.end();
      firsts.push(first);
      ratios.push(first / median(times));
    }
    console.log('\n### The first capture of a process, 1920 × 1080\n');
    printTable(
      ['× a warm one', 'quartiles', 'ms', 'processes'],
      [
        [
          number(median(ratios)),
          `${number(quantile(ratios, 0.25))}–${number(quantile(ratios, 0.75))}`,
          number(median(firsts)),
          processes,
        ],
      ],
    );
    console.log();
    printLimit('First capture', median(ratios), 3, '× a warm one');
  });
}

/**
 * By how many MB the memory of `name`'s process grows from the 200th to the 1,000th promise, from there
 * until there were `count`, and in as many more.
 */
async function growthOf(name, size, count) {
  const host = await startContestant(name, size);
  const grown = [(await host.growth(200, 800)) / 1e6];
  for (const shots of [count - 800, count]) grown.push((await host.growth(0, shots)) / 1e6);
  await host.end();
  return grown;
}

async function measureMemory({ captures }) {
  await withDesktop({}, async (size) => {
    const [early, grown, further] = await growthOf('deskhand', size, captures);
    const own = await growthOf(noPicture, size, captures);
    console.log('\n### Memory, 1920 × 1080\n');
    printLimit(`Resident memory grown over ${captures} captures`, early + grown, 5, 'MB');
    console.log(`- Counted from the 200th on; from the 1,000th on: ${number(grown)} MB`);
    // A leak goes on; memory that allocators and the collector keep for themselves does not.
    console.log(`- Over ${captures} more: ${number(further)} MB`);
    const all = own.map((megabytes) => `${number(megabytes)} MB`).join(', ');
    console.log(`- Node.js alone, as many promises of text, no picture, in the same three: ${all}`);
  });
}

function growthRow(what, { rows }) {
  const [a, own] = ['A', 'deskhand'].map((wanted) => rows.find(({ name }) => name === wanted));
  return [what, number(own.ratio[0]), number(own.ms[0]), number(a.ms[0])];
}

const growthHeader = (what) => [what, '× A', 'deskhand, ms', 'A, ms'];

async function measurePixels({ rounds }) {
  const rows = [];
  for (const density of [0.5, 1, 2]) {
    await withDesktop({ density }, async (size) => {
      const what = `${sizeText(size.screen)} to ${sizeText(size)}`;
      rows.push(growthRow(what, await runRounds(['deskhand'], size, rounds)));
    });
  }
  console.log('\n### The same desktop in 1, 4 and 16 times the pixels\n');
  printTable(growthHeader('pixels'), rows);
}

async function measureWindows({ rounds }) {
  const rows = [];
  for (const count of [1, 10, 50, 200]) {
    await withDesktop({ startPrograms: logos(count) }, async (size) => {
      rows.push(growthRow(count, await runRounds(['deskhand'], size, rounds)));
    });
  }
  console.log('\n### Windows on the screen, 1920 × 1080\n');
  printTable(growthHeader('windows'), rows);
}

const parts = {
  limits: measureLimits,
  peers: measurePeers,
  first: measureFirst,
  memory: measureMemory,
  pixels: measurePixels,
  windows: measureWindows,
};

const options = readOptions();
if (!existsSync(new URL('../build/bench/reference', import.meta.url))) {
  throw new Error('the reference is not built: run scripts/bench');
}
const load = os.loadavg()[0].toFixed(2);
console.log(`${os.cpus().length} cores, load ${load} before the start, Node.js ${process.version}`);
for (const part of options.only) await parts[part](options);
