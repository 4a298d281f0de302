'use strict';

const fs = require('node:fs');
const path = require('node:path');
const readline = require('node:readline');
const { atEnd } = require('./cleanup.js');
const { start } = require('./processes.js');
const { highDisplayNumber } = require('./x_server.js');

const root = path.join(__dirname, '..', '..');
const program =
  process.env.DESKHAND_X_PROXY ?? path.join(root, 'build', 'unit', 'test', 'support', 'x_proxy');

/** A display that passes everything on to a local server; see x_proxy.c. */
async function startXProxy(t, server) {
  if (!fs.existsSync(program)) {
    throw new Error(`${program} is missing: cmake --preset unit && cmake --build --preset unit`);
  }
  const number = highDisplayNumber();
  atEnd(t, () => fs.rmSync(`/tmp/.X11-unix/X${number}`, { force: true }));
  const child = start(t, program, [String(number), server.display.slice(1)], {
    stdio: ['pipe', 'pipe', 'pipe'],
  });
  const waiting = [];
  const settle = (answer) => waiting.shift()?.(answer);
  readline.createInterface({ input: child.stdout }).on('line', settle);
  child.on('exit', () => {
    while (waiting.length > 0) settle('the proxy has ended');
  });
  child.stdin.on('error', () => {}); // what was asked is answered above

  /** The number of answers since the last spoil(). */
  const order = async (...words) => {
    const answer = await new Promise((resolve) => {
      waiting.push(resolve);
      child.stdin.write(`${words.join(' ')}\n`);
    });
    const [, count] = /^ok (\d+)$/.exec(answer) ?? [];
    if (!count) throw new Error(`the proxy cannot do "${words.join(' ')}": ${answer}`);
    return Number(count);
  };
  await order('count'); // it listens
  const display = `:${number}`;
  return {
    display,
    /** The environment of the proxy's clients. */
    env: { ...server.env, DISPLAY: display },
    /** Counts from here, and spoils the nth answer. */
    spoil: (nth, fault, value = 0) => order('spoil', nth, fault, value),
    /** Counts from here, and spoils nothing. */
    passOn: () => order('spoil', 0, 'none'),
    count: () => order('count'),
    /** Ends the connections that a fault has silenced. */
    hangUp: () => order('hangup'),
  };
}

module.exports = { startXProxy };
