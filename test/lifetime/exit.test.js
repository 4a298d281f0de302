'use strict';

// Processes that end while captures are under way.
const assert = require('node:assert/strict');
const { test } = require('node:test');
const path = require('node:path');
const { isSanitized } = require('../support/host.js');
const { runScript, startScript } = require('../support/scripts.js');
const { startXServer } = require('../support/x_server.js');

const script = (name) => path.join(__dirname, 'scripts', name);
const LOAD_FACTOR = isSanitized() ? 3 : 1;

test('process.exit with captures under way ends at once with its own code', async (t) => {
  const { env } = await startXServer(t, { screen: '1920x1080x24' });
  for (let round = 0; round < 10; ++round) {
    const start = performance.now();
    const { code, signal, errors } = await runScript(t, script('exit_under_way.js'), { env });
    assert.deepEqual({ code, signal }, { code: 7, signal: null }, errors);
    assert.ok(performance.now() - start < 2000 * LOAD_FACTOR, 'at once');
  }
});

test('process.exit with stuck captures ends within their ten seconds', async (t) => {
  const server = await startXServer(t);
  const { ended, next, send } = startScript(t, script('exit_under_way.js'), {
    env: server.env,
    args: ['when told'],
  });
  assert.equal(await next(), 'ready');
  await server.pause();
  const start = performance.now();
  send('go');
  const { code, signal, errors } = await ended;
  assert.deepEqual({ code, signal }, { code: 7, signal: null }, errors);
  const taken = performance.now() - start;
  t.diagnostic(`${Math.round(taken)} ms`);
  assert.ok(taken < 10_500 * LOAD_FACTOR, `${taken} ms`);
});

test('a process whose promises are settled ends by itself', async (t) => {
  const { env } = await startXServer(t);
  const { code, signal } = await runScript(t, script('busy_loop_turns.js'), { env, args: ['1'] });
  assert.deepEqual({ code, signal }, { code: 0, signal: null });
});

test('an array that throws while it is read queues nothing', async (t) => {
  const { env } = await startXServer(t);
  const { code, errors, messages } = await runScript(t, script('throwing_element.js'), { env });
  assert.equal(code, 0, errors);
  const [{ thrown, before, after }] = messages;
  const refusal = { name: 'RangeError', message: 'not this one' };
  assert.deepEqual(thrown, [refusal, refusal]);
  assert.deepEqual(after, before, 'no thread and no connection');
});
