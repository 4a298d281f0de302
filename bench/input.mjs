// What acting costs, and what of a text arrives: deskhand beside the floor that the protocol sets and
// beside other packages, on a private desktop. Prints Markdown; docs/performance.md tells what it means.
import { fork, spawn } from 'node:child_process';
import { once } from 'node:events';
import os from 'node:os';
import path from 'node:path';
import { createInterface } from 'node:readline';
import { parseArgs } from 'node:util';
import { fileURLToPath } from 'node:url';

import { startDesktop, startTerminalFormAndBrowser } from '../demo/desktop.mjs';
import { startWorkbench } from '../demo/workbench.mjs';
import { names } from './actor.mjs';
import { entryReceiver, pageReceiver } from './receivers.mjs';
import { median, quantile } from './statistics.mjs';
import { number, printTable } from './tables.mjs';
import { editDistance, texts } from './texts.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));
const floorProgram = path.join(here, '..', 'build', 'bench', 'input_floor');

const FLOOR = 'the bare requests';
const ROUNDS = 20;
const COUNT = 100; // of calls in each round
const SLOW_COUNT = 5; // of what starts a program for each
const PATIENCE_MS = 180_000;

async function startActor(name) {
  const child = fork(path.join(here, 'actor.mjs'), [name], {
    stdio: ['ignore', 'ignore', 'ignore', 'ipc'],
  });
  const next = async () => {
    const timeout = AbortSignal.timeout(PATIENCE_MS);
    const [{ answer, error }] = await once(child, 'message', { signal: timeout });
    if (error !== undefined) throw new Error(error);
    return answer;
  };
  await next();
  return {
    name,
    ask(request, rest) {
      const answer = next();
      child.send({ request, ...rest });
      return answer;
    },
    end: () => child.kill('SIGKILL'),
  };
}

async function startFloor() {
  const child = spawn(floorProgram, { stdio: ['pipe', 'pipe', 'inherit'] });
  await once(child, 'spawn');
  const lines = createInterface({ input: child.stdout })[Symbol.asyncIterator]();
  return {
    name: FLOOR,
    async ask(request, { count }) {
      child.stdin.write(`${request} ${count}\n`);
      return (await lines.next()).value.trim().split(' ').map(Number);
    },
    end: () => child.kill('SIGKILL'),
  };
}

/** Those that can be started, and the reasons of the others. */
async function startAll(wanted) {
  const actors = [];
  for (const name of wanted) {
    try {
      actors.push(await startActor(name));
    } catch (error) {
      console.log(`- ${name} does not take part: ${error.message}`);
    }
  }
  return actors;
}

/** Rounds in which everyone calls in turn; a ratio is one of medians in the same round. */
async function measureCalls(request, title) {
  const actors = [
    await startFloor(),
    ...(await startAll(names.filter((name) => !name.includes('no delay')))),
  ];
  const rounds = new Map(actors.map(({ name }) => [name, []]));
  for (let round = 0; round < ROUNDS; ++round) {
    for (const actor of actors) {
      const count = actor.name === 'xdotool' ? SLOW_COUNT : COUNT;
      rounds.get(actor.name).push(median(await actor.ask(request, { count })));
    }
  }
  for (const actor of actors) actor.end();
  const floor = rounds.get(FLOOR);
  console.log(`\n### ${title}\n`);
  printTable(
    ['', '× the floor', 'quartiles', 'µs'],
    [...rounds].map(([name, times]) => {
      const ratios = times.map((time, round) => time / floor[round]);
      const [low, middle, high] = [0.25, 0.5, 0.75].map((q) => number(quantile(ratios, q)));
      return [name, middle, `${low}–${high}`, number(median(times))];
    }),
  );
}

/** What arrives of a text, and how fast: characters a second, and in brackets how many are wrong. */
async function typeOnce(name, receiver, text) {
  const [actor] = await startAll([name]);
  if (!actor) return null;
  try {
    const { text: arrived, ms } = await receiver.receive(() => actor.ask('type', { text }));
    return `${Math.round([...text].length / (ms / 1000))} (${editDistance(text, arrived)})`;
  } finally {
    actor.end();
  }
}

/** Each text has a desktop of its own: whatever one leaves behind is not the next one's to mend. */
async function measureTyping() {
  const rows = [];
  for (const name of names) {
    for (const receiverOn of [pageReceiver, () => entryReceiver]) {
      const cells = [];
      for (const text of Object.values(texts)) {
        cells.push(await onDesktop((workbench) => typeOnce(name, receiverOn(workbench), text)));
      }
      if (cells.some((cell) => cell !== null)) {
        rows.push([name, receiverOn({}).name, ...cells.map((cell) => cell ?? '')]);
      }
    }
  }
  console.log('\n### A thousand characters: how many a second, and in brackets how many wrong\n');
  printTable(['', 'into', ...Object.keys(texts)], rows);
}

async function onDesktop(action) {
  const workbench = await startWorkbench();
  const startPrograms = (desktop) =>
    startTerminalFormAndBrowser({ ...desktop, url: workbench.url });
  const desktop = await startDesktop({ startPrograms });
  try {
    return await action(workbench);
  } finally {
    await desktop.stop();
    workbench.stop();
  }
}

const parts = ['move', 'query', 'typing'];
const { values } = parseArgs({
  options: {
    only: { type: 'string', multiple: true, default: parts },
    help: { type: 'boolean', default: false },
  },
});
if (values.help || !values.only.every((part) => parts.includes(part))) {
  console.log(`scripts/bench input [--only ${parts.join(' | ')}], which may be repeated`);
  process.exit(values.help ? 0 : 2);
}
const isWanted = (part) => values.only.includes(part);
const load = os.loadavg()[0].toFixed(2);
console.log(`${os.cpus().length} cores, load ${load} before the start, Node.js ${process.version}`);
await onDesktop(async () => {
  if (isWanted('move')) await measureCalls('move', 'Moving the pointer');
  if (isWanted('query')) await measureCalls('query', 'Asking where the pointer is');
});
if (isWanted('typing')) await measureTyping();
