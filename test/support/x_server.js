'use strict';

const fs = require('node:fs');
const { atEnd } = require('./cleanup.js');
const { hasExited, kill, pause, resume, start } = require('./processes.js');
const { until } = require('./until.js');

/** A display number that hardly anybody has, and that nobody takes when its server has gone. */
function highDisplayNumber() {
  return 1000 + Math.floor(Math.random() * 50_000);
}

const START_TRIES = 3;

/** What a killed server leaves behind. */
function removeTraces(number) {
  for (const file of [`/tmp/.X${number}-lock`, `/tmp/.X11-unix/X${number}`]) {
    fs.rmSync(file, { force: true });
  }
}

/** Resolves with an Xvfb that is ready, or that has ended instead, because another has its number. */
async function startXvfb(t, { screen, number, transport, args }) {
  const transports =
    transport === 'tcp'
      ? ['-listen', 'tcp', '-nolisten', 'local', '-nolisten', 'unix']
      : ['-nolisten', 'tcp'];
  const child = start(
    t,
    'Xvfb',
    [
      ...[`:${number}`, '-displayfd', '3', '-noreset', '-screen', '0', screen],
      ...[...transports, ...args],
    ],
    { stdio: ['ignore', 'ignore', 'pipe', 'pipe'] },
  );
  let answer = '';
  child.stdio[3].setEncoding('latin1').on('data', (text) => (answer += text));
  await until(() => answer.endsWith('\n') || hasExited(child), 'the X server is ready');
  return child;
}

/**
 * A private X server that is ready and has a display number of its own.
 * `screen`: width x height x depth. `number`: the display number, for a server that is to come back
 * under it. `transport`: 'local' or 'tcp', over which then all connections go. `args`: more
 * arguments.
 */
async function startXServer(
  t,
  { screen = '1280x800x24', transport = 'local', args = [], ...given } = {},
) {
  let number;
  let child;
  for (let tries = 0; tries === 0 || (hasExited(child) && tries < START_TRIES); ++tries) {
    number = given.number ?? highDisplayNumber();
    child = await startXvfb(t, { screen, number, transport, args });
  }
  if (hasExited(child)) throw new Error(`Xvfb does not start: ${child.errors()}`);
  atEnd(t, () => removeTraces(number));
  const display = transport === 'tcp' ? `127.0.0.1:${number}` : `:${number}`;
  return {
    pid: child.pid,
    display,
    /** The environment of the server's clients. */
    env: { ...process.env, DISPLAY: display, XAUTHORITY: '/dev/null' },
    /** Stops it as a whole: it keeps its connections and answers nothing. */
    pause: () => pause(child),
    resume: () => resume(child),
    /** Ends it without any chance to say so. */
    async kill() {
      await kill(child);
      removeTraces(number);
    },
  };
}

module.exports = { highDisplayNumber, startXServer };
