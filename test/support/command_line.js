'use strict';

const { once } = require('node:events');
const path = require('node:path');
const { hostEnvironment } = require('./host.js');
const { start } = require('./processes.js');

const program = path.join(__dirname, '..', '..', 'bin', 'deskhand.js');

/**
 * Runs the command line in a process of its own; `input` is its standard input. Resolves with { status,
 * output, bytes, errors } when it has ended.
 */
async function runCommand(t, env, args, { input } = {}) {
  const child = start(t, process.execPath, [program, ...args], {
    env: hostEnvironment(env),
    stdio: [input === undefined ? 'ignore' : 'pipe', 'pipe', 'pipe'],
  });
  const chunks = [];
  child.stdout.on('data', (chunk) => chunks.push(chunk));
  child.stdin?.end(input);
  const [status] = await once(child, 'close');
  const bytes = Buffer.concat(chunks);
  return { status, bytes, output: bytes.toString('utf8'), errors: child.errors() };
}

/** Commands on one desktop, each of which must go well: run(...words) and json(...words). */
function commandLine(t, env) {
  const run = async (...args) => {
    const { status, output, errors } = await runCommand(t, env, args);
    if (status !== 0 || errors !== '')
      throw new Error(`deskhand ${args.join(' ')}: ${status} ${errors}`);
    return output;
  };
  return { run, json: async (...args) => JSON.parse(await run(...args, '--json')) };
}

module.exports = { commandLine, runCommand };
