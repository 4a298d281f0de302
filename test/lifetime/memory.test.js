'use strict';

// What many captures leave behind: nothing.
const assert = require('node:assert/strict');
const { test } = require('node:test');
const path = require('node:path');
const { isSanitized } = require('../support/host.js');
const { runScript } = require('../support/scripts.js');
const { startXServer } = require('../support/x_server.js');

const CAPTURES = isSanitized() ? 200 : 1000;

test(`${CAPTURES} captures leave no memory, no thread and no open file behind`, async (t) => {
  const { env } = await startXServer(t, { screen: '1920x1080x24' });
  const { code, signal, errors, messages } = await runScript(
    t,
    path.join(__dirname, 'scripts', 'many_captures.js'),
    { env, args: [String(CAPTURES)] },
  );
  assert.deepEqual({ code, signal }, { code: 0, signal: null }, errors);
  const [{ before, after }] = messages;
  assert.deepEqual([after.threads, after.files], [before.threads, before.files]);
  if (isSanitized()) return; // the sanitizer looks for leaks, and keeps freed memory itself
  const grown = after.residentBytes - before.residentBytes;
  t.diagnostic(`grown by ${(grown / 1e6).toFixed(2)} MB`);
  assert.ok(grown < 5e6, `${grown} bytes more`);
});
