'use strict';

const fs = require('node:fs');
const readline = require('node:readline');
const { start } = require('./processes.js');

/**
 * Starts a program of our own that answers each line of its standard input with a line. Returns
 * what asks it, with the words of a line; resolves with its answer.
 */
function startLineProgram(t, program, args, env) {
  if (!fs.existsSync(program)) {
    throw new Error(`${program} is missing: cmake --preset unit && cmake --build --preset unit`);
  }
  const child = start(t, program, args, { env, stdio: ['pipe', 'pipe', 'pipe'] });
  const waiting = [];
  const settle = (answer) => waiting.shift()?.(answer);
  readline.createInterface({ input: child.stdout }).on('line', settle);
  child.on('exit', () => {
    while (waiting.length > 0) settle('error: the program has ended');
  });
  child.stdin.on('error', () => {}); // what was asked is answered above
  return (...words) =>
    new Promise((resolve) => {
      waiting.push(resolve);
      child.stdin.write(`${words.join(' ')}\n`);
    });
}

module.exports = { startLineProgram };
