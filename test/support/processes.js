'use strict';

const { spawn } = require('node:child_process');
const fs = require('node:fs');
const { atEnd } = require('./cleanup.js');
const { until } = require('./until.js');

const ENDING_MS = 3000;

function hasExited(child) {
  return child.exitCode !== null || child.signalCode !== null;
}

/** Signals a process and all of its group. */
function signalGroup(child, signal) {
  try {
    process.kill(-child.pid, signal);
  } catch (error) {
    if (error.code !== 'ESRCH') throw error;
  }
}

async function end(child) {
  if (!hasExited(child)) {
    signalGroup(child, 'SIGCONT');
    signalGroup(child, 'SIGTERM');
    const ended = () => hasExited(child);
    await until(ended, 'a process has ended', { timeoutMs: ENDING_MS }).catch(() => {});
  }
  // Even when it has exited itself, others of its group may be left.
  signalGroup(child, 'SIGKILL');
  await until(() => hasExited(child), 'a killed process is gone');
}

/**
 * Starts a program that is gone when the test ends, with its children: it leads a process group,
 * and dies with this process even if that is killed. `child.errors()` is what it wrote to standard
 * error.
 */
function start(t, command, args, { env = process.env, stdio = ['ignore', 'ignore', 'pipe'] } = {}) {
  const child = spawn('setpriv', ['--pdeathsig', 'KILL', command, ...args], {
    detached: true,
    env,
    stdio,
    serialization: 'advanced',
  });
  let errors = '';
  child.stderr?.setEncoding('utf8').on('data', (text) => (errors += text));
  child.errors = () => errors;
  child.on('error', (error) => (errors += error.message));
  if (child.pid === undefined) throw new Error('cannot start setpriv: install util-linux');
  atEnd(t, () => end(child));
  return child;
}

/** One letter: R running, S sleeping, T stopped, Z ended. */
function stateOf(pid) {
  const stat = fs.readFileSync(`/proc/${pid}/stat`, 'latin1');
  return stat.slice(stat.lastIndexOf(')') + 2)[0];
}

async function pause(child) {
  process.kill(child.pid, 'SIGSTOP');
  await until(() => stateOf(child.pid) === 'T', 'the process is stopped');
}

function resume(child) {
  process.kill(child.pid, 'SIGCONT');
}

async function kill(child) {
  child.kill('SIGKILL');
  await until(() => hasExited(child), 'the killed process is gone');
}

/** What a running process uses of the system. */
function usageOf(pid) {
  const status = fs.readFileSync(`/proc/${pid}/status`, 'latin1');
  const bytes = (name) => Number(new RegExp(`^${name}:\\s+(\\d+) kB$`, 'm').exec(status)[1]) * 1024;
  return {
    files: fs.readdirSync(`/proc/${pid}/fd`).length,
    threads: fs.readdirSync(`/proc/${pid}/task`).length,
    residentBytes: bytes('VmRSS'),
    peakBytes: bytes('VmHWM'), // the most that was ever resident
  };
}

module.exports = { hasExited, kill, pause, resume, start, usageOf };
