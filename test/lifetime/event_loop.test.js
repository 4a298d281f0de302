'use strict';

// The event loop while captures are under way.
const assert = require('node:assert/strict');
const { test } = require('node:test');
const path = require('node:path');
const { runScript, startScript } = require('../support/scripts.js');
const { startXServer } = require('../support/x_server.js');

const script = (name) => path.join(__dirname, 'scripts', name);

test('turns on during captures, each of which is settled once, as itself', async (t) => {
  const captures = 16;
  const { env } = await startXServer(t, { screen: '1920x1080x24' });
  const { code, errors, messages } = await runScript(t, script('busy_loop_turns.js'), {
    env,
    args: [String(captures)],
  });
  assert.equal(code, 0, errors);
  const [outcomes] = messages;
  assert.deepEqual(
    outcomes.map(({ index }) => index).sort((a, b) => a - b),
    Array.from({ length: captures }, (_, index) => index),
  );
  for (const { status } of outcomes) assert.equal(status, 'resolved');
  assert.ok(outcomes[0].turns > 0, 'the first capture did not keep the loop from turning');
  assert.ok(outcomes.at(-1).turns > captures, 'nor did the others');
});

test('fires its timers while a capture is stuck', async (t) => {
  const server = await startXServer(t);
  const { ended, next, send } = startScript(t, script('timers_beside_stuck.js'), {
    env: server.env,
  });
  assert.equal(await next(), 'ready');
  await server.pause();
  send('go');
  const { code, errors, messages } = await ended;
  assert.equal(code, 0, errors);
  const { events, ticks } = messages.at(-1);
  assert.deepEqual(events, ['timer', 'rejected']);
  assert.ok(ticks > 20, `${ticks} ticks`);
});
