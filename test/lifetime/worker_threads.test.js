'use strict';

// The addon in worker threads, also in those that are terminated while it works for them.
const assert = require('node:assert/strict');
const { test } = require('node:test');
const path = require('node:path');
const { isSanitized } = require('../support/host.js');
const { runScript } = require('../support/scripts.js');
const { startXServer } = require('../support/x_server.js');

const script = (name) => path.join(__dirname, 'scripts', name);

test('many worker threads at once load the addon and take pictures', async (t) => {
  const { env } = await startXServer(t);
  const { code, signal, errors, messages } = await runScript(t, script('many_workers.js'), { env });
  assert.deepEqual({ code, signal }, { code: 0, signal: null }, errors);
  assert.deepEqual(messages, [{ main: 1280, workers: Array(8).fill([1280, 1280]) }]);
});

test('120 worker threads terminated with captures under way neither crash nor leak', async (t) => {
  const { env } = await startXServer(t);
  const { code, signal, errors, messages } = await runScript(t, script('terminated_workers.js'), {
    env,
    args: ['120', '40'],
  });
  assert.deepEqual({ code, signal }, { code: 0, signal: null }, errors);
  const [warm, , last] = messages;
  assert.equal(last.round, 120);
  assert.ok(last.unfinished > 60, `only ${last.unfinished} were terminated in time`);
  assert.deepEqual([last.threads, last.files], [warm.threads, warm.files]);
  if (isSanitized()) return; // the sanitizer looks for leaks, and keeps freed memory itself
  const grown = last.residentBytes - warm.residentBytes;
  t.diagnostic(`80 rounds: ${(grown / 1e6).toFixed(1)} MB`);
  assert.ok(grown < 15e6, `${grown} bytes more`);
});
