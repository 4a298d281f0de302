'use strict';

// Whom macOS asks about, and lists, when a program of the command line wants a permission: the application in
// which it all began, such as the terminal.
const { execFileSync } = require('node:child_process');

/** Processes from the lines of `ps -axo pid=,ppid=,comm=`, by their number. */
function readProcesses(text) {
  const matches = [...text.matchAll(/^ *(\d+) +(\d+) +(.+)$/gm)];
  return new Map(
    matches.map(([, pid, parent, command]) => [Number(pid), { parent: Number(parent), command }]),
  );
}

/** The process and all that it descends from, but for the first of all. */
function ancestry(processes, pid) {
  const chain = [];
  for (let at = pid; at > 1 && processes.has(at) && chain.length < processes.size;) {
    const { parent, command } = processes.get(at);
    chain.push(command);
    at = parent;
  }
  return chain;
}

/** The outermost application, else the outermost program: { name, path }. Null when nothing is known. */
function responsibleProgram(text, pid) {
  const outermost = ancestry(readProcesses(text), pid).reverse();
  for (const command of outermost) {
    const bundle = /^(.*?\/([^/]+)\.app)\/Contents\//.exec(command);
    if (bundle) return { name: bundle[2], path: bundle[1] };
  }
  const [first] = outermost;
  return first ? { name: first.split('/').pop(), path: first } : null;
}

/** Null where permissions are no matter of programs. */
function attribution() {
  if (process.platform !== 'darwin') return null;
  try {
    const text = execFileSync('/bin/ps', ['-axo', 'pid=,ppid=,comm='], {
      encoding: 'utf8',
      timeout: 5000,
    });
    return responsibleProgram(text, process.pid);
  } catch {
    return null;
  }
}

module.exports = { attribution, responsibleProgram };
