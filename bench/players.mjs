// The running contestants, each of which takes one picture when it is told to: programs of their
// own, so that all start from the same.
import { fork, spawn } from 'node:child_process';
import { once } from 'node:events';
import path from 'node:path';
import { createInterface } from 'node:readline';
import { setTimeout as delay } from 'node:timers/promises';
import { fileURLToPath } from 'node:url';

const here = path.dirname(fileURLToPath(import.meta.url));
const referenceProgram = path.join(here, '..', 'build', 'bench', 'reference');

// The slowest takes a second or two; nothing is to wait for ever. A long series has its own bound.
const PATIENCE_MS = 60_000;
const ENDING_MS = 3000;

const PAUSE_MS = 30;

export const REFERENCE = 'A';

/**
 * A pause before a shot. What the one before leaves to be done after its answer, such as freeing
 * memory, is not to fall to the next one; and nobody takes screenshots back to back.
 */
export const breathe = () => delay(PAUSE_MS);

/** Rejects when `promise` is not settled in time. */
function within(promise, milliseconds, what) {
  let timer;
  const late = new Promise((_, reject) => {
    timer = setTimeout(() => reject(new Error(`${what}: no answer`)), milliseconds);
  });
  return Promise.race([promise, late]).finally(() => clearTimeout(timer));
}

async function end(child) {
  if (child.exitCode !== null || child.signalCode !== null) return;
  const ended = once(child, 'exit');
  child.kill('SIGTERM');
  await within(ended, ENDING_MS, 'a process that is to end').catch(() => child.kill('SIGKILL'));
  await ended;
}

/** The reference program. `size` is that of its pictures. */
export async function startReference(size) {
  const child = spawn(referenceProgram, [size.width, size.height], {
    stdio: ['pipe', 'pipe', 'inherit'],
  });
  await once(child, 'spawn');
  const lines = createInterface({ input: child.stdout })[Symbol.asyncIterator]();
  child.stdin.on('error', () => {}); // the missing answer tells
  const ask = async (line) => {
    child.stdin.write(`${line}\n`);
    const { value, done } = await within(lines.next(), PATIENCE_MS, 'the reference');
    if (done) throw new Error('the reference has ended');
    return value;
  };
  return {
    name: REFERENCE,
    async time() {
      const [ms, bytes] = (await ask('')).split(' ').map(Number);
      return { ms, bytes };
    },
    picture: () => ask('picture'),
    end: () => end(child),
  };
}

/** One of contestants.mjs. Rejects with the reason when it cannot take part. */
export async function startContestant(name, size) {
  const child = fork(path.join(here, 'contestant.mjs'), [name, JSON.stringify(size)], {
    execArgv: ['--expose-gc'],
    // Some packages are talkative.
    stdio: ['ignore', 'ignore', 'inherit', 'ipc'],
  });
  const nextAnswer = async (patienceMs) => {
    const waiting = new AbortController();
    const { signal } = waiting;
    const message = once(child, 'message', { signal });
    const exit = once(child, 'exit', { signal }).then(([code, killer]) => {
      throw new Error(`its process has ended (${killer ?? `exit status ${code}`})`);
    });
    try {
      const [{ answer, error }] = await within(Promise.race([message, exit]), patienceMs, name);
      if (error !== undefined) throw new Error(error);
      return answer;
    } finally {
      waiting.abort();
      for (const other of [message, exit]) other.catch(() => {}); // aborted: nobody waits for it
    }
  };
  const ask = (message, patienceMs = PATIENCE_MS) => {
    const answer = nextAnswer(patienceMs);
    child.send(message);
    return answer;
  };
  try {
    await nextAnswer(PATIENCE_MS);
  } catch (error) {
    await end(child);
    throw error;
  }
  return {
    name,
    time: () => ask({ request: 'time' }),
    picture: () => ask({ request: 'picture' }),
    blocked: (count) => ask({ request: 'blocked', count }, PATIENCE_MS + count * 1000),
    growth: (settled, count) =>
      ask({ request: 'growth', settled, count }, PATIENCE_MS + count * 1000),
    end: () => end(child),
  };
}
