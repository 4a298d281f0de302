'use strict';

const path = require('node:path');
const { kill, start, usageOf } = require('./processes.js');

/** Longer than any call may take; a test that waits in vain is to fail, not to hang. */
const ANSWER_MS = 30_000;

/** An environment with a display name under which there is no server. */
const NOWHERE = { ...process.env, DISPLAY: ':59999' };

/** Whether the addon under test is built with a sanitizer. */
function isSanitized() {
  return Boolean(process.env.DESKHAND_PRELOAD);
}

/** The environment of a process that loads the addon; a sanitizer's runtime comes first there. */
function hostEnvironment(env) {
  const preload = process.env.DESKHAND_PRELOAD;
  return preload ? { ...env, LD_PRELOAD: preload } : env;
}

/**
 * A fresh process that has loaded the addon and called nothing. `host.addon` has the addon's
 * functions, each of which returns a promise here; a failure is the error that the addon made, with
 * `outcome` 'thrown' or 'rejected'.
 */
function startHost(t, env) {
  const child = start(t, process.execPath, [path.join(__dirname, 'host_process.js')], {
    env: hostEnvironment(env),
    stdio: ['ignore', 'ignore', 'pipe', 'ipc'],
  });
  const waiting = new Map();
  let nextId = 0;
  child.on('message', ({ id, outcome, value, error }) => {
    const { resolve, reject } = waiting.get(id);
    waiting.delete(id);
    if (outcome === 'returned') resolve(value);
    else reject(Object.assign(error, { outcome }));
  });
  child.on('exit', (code, signal) => {
    for (const { reject } of waiting.values()) {
      reject(new Error(`the host ended with ${signal ?? code}: ${child.errors()}`));
    }
    waiting.clear();
  });
  const order = (message) =>
    new Promise((resolve, reject) => {
      const id = nextId++;
      waiting.set(id, { resolve, reject });
      child.send({ id, ...message });
      const isLate = new Error(`the host has not answered for ${ANSWER_MS} ms`);
      setTimeout(() => reject(isLate), ANSWER_MS).unref();
    });
  return {
    addon: new Proxy(
      {},
      { get: (_, name) => (...args) => order({ order: 'call', name, args }) },
    ),
    /** Sets variables in its process.env; undefined removes one. */
    setEnvironment: (variables) => order({ order: 'environment', variables }),
    pid: child.pid,
    usage: () => usageOf(child.pid),
    /** Ends it without any chance to say so. */
    end: () => kill(child),
  };
}

module.exports = { NOWHERE, hostEnvironment, isSanitized, startHost };
