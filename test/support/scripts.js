'use strict';

const assert = require('node:assert/strict');
const { once } = require('node:events');
const { hostEnvironment } = require('./host.js');
const { leaksOfAddon } = require('./leaks.js');
const { start } = require('./processes.js');

/** Longer than any script may take; a test that waits in vain is to fail, not to hang. */
const SCRIPT_MS = 180_000;

/**
 * Runs a script that loads the addon in a process of its own. `messages` is what it has sent so
 * far; `next()` resolves with its next message, and with undefined when it ends before; `ended`
 * resolves with { code, signal, errors, messages }, and rejects when a leak was reported.
 */
function startScript(t, file, { env = process.env, args = [] } = {}) {
  const child = start(t, process.execPath, ['--expose-gc', file, ...args], {
    env: hostEnvironment(env),
    stdio: ['ignore', 'ignore', 'pipe', 'ipc'],
  });
  setTimeout(() => child.kill('SIGKILL'), SCRIPT_MS).unref();
  const messages = [];
  child.on('message', (message) => messages.push(message));
  // 'close' comes when all that it wrote and sent has arrived.
  const ended = once(child, 'close').then(([code, signal]) => {
    const errors = child.errors();
    assert.deepEqual(leaksOfAddon(errors), []);
    return { code, signal, errors, messages };
  });
  const nextMessage = () => once(child, 'message').then(([message]) => message);
  return {
    pid: child.pid,
    messages,
    ended,
    send: (message) => child.send(message),
    next: () => Promise.race([nextMessage(), ended.then(() => undefined)]),
  };
}

const MOST_RUNS = 3;

/**
 * The leak detector stops the process to read its memory, and can itself crash there where many threads
 * are ending. Such a run says nothing, neither good nor bad.
 */
const hasNoVerdict = ({ errors }) =>
  errors.includes('Tracer caught signal') &&
  errors.includes('LeakSanitizer has encountered a fatal error');

/** Runs a script to its end. */
async function runScript(t, file, options) {
  for (let run = 1; ; ++run) {
    const result = await startScript(t, file, options).ended;
    if (run === MOST_RUNS || !hasNoVerdict(result)) return result;
    t.diagnostic('the leak detector crashed: once more');
  }
}

module.exports = { runScript, startScript };
