'use strict';
// Scripts that need a process of their own: to be loaded into, to be ended, to crash alone.
const assert = require('node:assert/strict');
const { spawn } = require('node:child_process');
const path = require('node:path');

const deadlineMs = 60_000;

/** Runs scripts/<name>, with more environment if given, and resolves with how it ended:
 * { code, signal, stdout, stderr, ms }. */
function spawnScript(name, args = [], env = {}) {
  return new Promise((resolve, reject) => {
    const startedAt = process.hrtime.bigint();
    const child = spawn(process.execPath, [path.join(__dirname, 'scripts', name), ...args],
      { timeout: deadlineMs, killSignal: 'SIGKILL', env: { ...process.env, ...env } });
    let stdout = '';
    let stderr = '';
    child.stdout.on('data', (text) => { stdout += text; });
    child.stderr.on('data', (text) => { stderr += text; });
    child.on('error', reject);
    child.on('close', (code, signal) => resolve({
      code, signal, stdout, stderr, ms: Number(process.hrtime.bigint() - startedAt) / 1e6,
    }));
  });
}

/** Runs scripts/<name>, which must end well; what it printed, read as JSON. */
async function runScript(name, ...args) {
  const { code, signal, stdout, stderr } = await spawnScript(name, args);
  assert.deepEqual({ code, signal, stderr }, { code: 0, signal: null, stderr: '' });
  return JSON.parse(stdout);
}

module.exports = { spawnScript, runScript };
