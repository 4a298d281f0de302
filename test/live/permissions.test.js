'use strict';

// What this process may do: all that the server lets it.
const assert = require('node:assert/strict');
const { test } = require('node:test');
const { startHost } = require('../support/host.js');
const { startXServer } = require('../support/x_server.js');

/** What the four functions say. */
async function permissions(addon) {
  return {
    accessibility: [await addon.checkAccessibility(), await addon.requestAccessibility()],
    screenRecording: [await addon.checkScreenRecording(), await addon.requestScreenRecording()],
  };
}

const ALL = { accessibility: [true, true], screenRecording: [true, true] };
const NONE = { accessibility: [false, false], screenRecording: [false, false] };

test('a server lets its clients do all', async (t) => {
  const { env } = await startXServer(t);
  assert.deepEqual(await permissions(startHost(t, env).addon), ALL);
});

test('a server without XTEST can be seen, but not operated', async (t) => {
  const { env } = await startXServer(t, { args: ['-extension', 'XTEST'] });
  assert.deepEqual(await permissions(startHost(t, env).addon), { ...ALL, accessibility: [false, false] });
});

test('without a server nothing is permitted, until there is one', async (t) => {
  const { addon, setEnvironment } = startHost(t, { ...process.env, DISPLAY: undefined });
  assert.deepEqual(await permissions(addon), NONE);
  const server = await startXServer(t);
  await setEnvironment(server.env);
  assert.deepEqual(await permissions(addon), ALL);
  await server.kill();
  assert.deepEqual(await permissions(addon), NONE);
});

test('a server that has stopped permits nothing, in time', async (t) => {
  const server = await startXServer(t);
  const { addon } = startHost(t, server.env);
  assert.deepEqual(await permissions(addon), ALL);
  await server.pause();
  const start = performance.now();
  assert.equal(await addon.checkAccessibility(), false);
  assert.equal(await addon.checkScreenRecording(), false);
  assert.ok(performance.now() - start < 5000);
  server.resume();
  assert.deepEqual(await permissions(addon), ALL);
});
