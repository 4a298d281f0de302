'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { atEnd } = require('./cleanup.js');
const { startLineProgram } = require('./line_program.js');
const { highDisplayNumber } = require('./x_server.js');

const root = path.join(__dirname, '..', '..');
const program =
  process.env.DESKHAND_X_PROXY ?? path.join(root, 'build', 'unit', 'test', 'support', 'x_proxy');

/** A display that passes everything on to a local server; see x_proxy.c. */
async function startXProxy(t, server) {
  const number = highDisplayNumber();
  atEnd(t, () => fs.rmSync(`/tmp/.X11-unix/X${number}`, { force: true }));
  const ask = startLineProgram(t, program, [String(number), server.display.slice(1)]);
  /** What there was since the last spoil(). */
  const look = async (...words) => {
    const answer = await ask(...words);
    const [, answers, turns] = /^ok (\d+) (\d+)$/.exec(answer) ?? [];
    if (!answers) throw new Error(`the proxy cannot do "${words.join(' ')}": ${answer}`);
    return { answers: Number(answers), turns: Number(turns) };
  };
  const order = async (...words) => (await look(...words)).answers;
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
    /** How often the client has sent something after an answer: one less than its round trips. */
    turns: async () => (await look('count')).turns,
    /** Ends the connections that a fault has silenced. */
    hangUp: () => order('hangup'),
    /** Ends all connections. */
    drop: () => order('drop'),
  };
}

module.exports = { startXProxy };
