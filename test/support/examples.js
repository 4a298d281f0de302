'use strict';

const fs = require('node:fs');
const path = require('node:path');
const { hostEnvironment } = require('./host.js');
const { temporaryFolder } = require('./painter.js');
const { hasExited, start } = require('./processes.js');
const { until } = require('./until.js');

const root = path.join(__dirname, '..', '..');

/** A folder as a user has it: a copy of the examples, with this package installed beside them. */
function installExamples(t, packages = { deskhand: root }) {
  const folder = temporaryFolder(t);
  fs.cpSync(path.join(root, 'examples'), folder, { recursive: true });
  const modules = path.join(folder, 'node_modules');
  fs.mkdirSync(modules);
  for (const [name, place] of Object.entries(packages)) {
    fs.symlinkSync(place, path.join(modules, name));
  }
  return folder;
}

/**
 * Runs a program of JavaScript in `folder`. `out()` is what it has printed so far; `says(pattern)`
 * resolves with the match when it has printed that; `ends()` with all that it printed when it has
 * ended well.
 */
function runScript(t, env, folder, file, args = []) {
  const words = [process.execPath, path.join(folder, file), ...args.map(String)];
  const child = start(t, 'env', ['-C', folder, ...words], {
    env: hostEnvironment(env),
    stdio: ['ignore', 'pipe', 'pipe'],
  });
  let text = '';
  let isComplete = false;
  child.stdout.setEncoding('utf8').on('data', (part) => (text += part));
  child.on('close', () => (isComplete = true));
  const trouble = () => `${file} ended with ${child.signalCode ?? child.exitCode}: ${child.errors()}`;
  return {
    child,
    out: () => text,
    async says(pattern) {
      const find = () => {
        const match = pattern.exec(text);
        if (!match && hasExited(child) && isComplete) throw new Error(trouble());
        return match;
      };
      return until(find, `${file} says ${pattern}`, { timeoutMs: 30_000 });
    },
    async ends() {
      await until(() => isComplete, `${file} has ended`, { timeoutMs: 30_000 });
      if (child.exitCode !== 0) throw new Error(trouble());
      return text;
    },
    /** What it wrote to standard error when it has ended badly. */
    async fails() {
      await until(() => isComplete, `${file} has ended`, { timeoutMs: 30_000 });
      if (child.exitCode === 0) throw new Error(`${file} ended well: ${text}`);
      return child.errors();
    },
  };
}

module.exports = { installExamples, root, runScript };
