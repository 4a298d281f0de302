'use strict';
// keyHold: every platform call, in order; and the calls that end the process.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { spawnScript } = require('./child');
const { scene } = require('./harness');
const { key, tap, pause } = require('./input_calls');
const { throwsUsage, throwsPlainError, throwsConversionError } = require('./exceptions');

const usage = 'keyHold requires (chord: string, durationMs: number)';

test('keyHold("space", 500) posts key code 49 down, sleeps 500,000 microseconds, posts it up',
  (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.keyHold('space', 500), true);
    assert.deepEqual(mac.calls(), [
      ['CGEventSourceCreate', -1],
      ['CGEventCreateKeyboardEvent', 'source', 49, true],
      ['CGEventPost', 0, 'event'],
      ['CFRelease', 'event'],
      ['CFRelease', 'source'],

      ['usleep', 500000],

      ['CGEventSourceCreate', -1],
      ['CGEventCreateKeyboardEvent', 'source', 49, false],
      ['CGEventPost', 0, 'event'],
      ['CFRelease', 'event'],
      ['CFRelease', 'source'],
    ]);
  });

for (const duration of [0, -10, 0.9, -0.5, NaN, Infinity, -2147483648, 2 ** 31]) {
  test(`keyHold("space", ${duration}) posts down and up with no pause`, (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.keyHold('space', duration), true);
    assert.deepEqual(mac.calls(), tap(49));
  });
}

for (const [duration, microseconds] of [
  [1, 1000], [1.9, 1000], [4_294_967, 4_294_967_000], [4_294_968, 704],
  [2_147_483_647, 4_294_966_296],
]) {
  test(`keyHold("space", ${duration}) sleeps ${microseconds} microseconds`, (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.keyHold('space', duration), true);
    assert.deepEqual(mac.calls(), [...key(49, true), ...pause(microseconds), ...key(49, false)]);
  });
}

test('both events of a held chord have its flags', (t) => {
  const mac = scene(t);
  mac.addon.keyHold('Cmd + Shift', 10);
  assert.deepEqual(mac.calls(),
    [...key(56, true, 0x120000), ...pause(10_000), ...key(56, false, 0x120000)]);
});

test('keyHold("a") and keyHold() throw the usage, as a TypeError', (t) => {
  const mac = scene(t);
  throwsUsage(mac, () => mac.addon.keyHold(), usage);
  throwsUsage(mac, () => mac.addon.keyHold('a'), usage);
  throwsUsage(mac, () => mac.addon.keyHold(5), usage);
});

test('a chord without a key is an Error that quotes it as it came, and nothing is posted', (t) => {
  const mac = scene(t);
  for (const chord of ['cmd+foo', '', 'Cmd + Foo', '!', 'a\t']) {
    throwsPlainError(mac, () => mac.addon.keyHold(chord, 10),
      `keyHold: no valid key found in chord '${chord}'`);
  }
});

test('keyHold("space", "500") posts down and up with no pause and ends in the conversion error',
  (t) => {
    const mac = scene(t);
    throwsConversionError(() => mac.addon.keyHold('space', '500'), 'number');
    assert.deepEqual(mac.calls(), tap(49));
  });

test('any duration that is no number does the same', (t) => {
  const mac = scene(t);
  for (const odd of [undefined, null, {}, true, 5n, Symbol('5')]) {
    const before = mac.calls().length;
    throwsConversionError(() => mac.addon.keyHold('cmd+a', odd), 'number');
    assert.deepEqual(mac.calls().slice(before), tap(0, 0x100000));
  }
});

test('extra arguments are ignored', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.keyHold('a', 1, 9, 'cmd'), true);
  assert.deepEqual(mac.calls(), [...key(0, true), ...pause(1000), ...key(0, false)]);
});

/** How a process ended that made this one call, and what was thrown before, if anything was. */
async function outcomeOf(args) {
  const { code, signal, stdout, stderr } = await spawnScript('hold_key.js', [args]);
  const isFatal = stderr.includes('FATAL ERROR: Error::ThrowAsJavaScriptException napi_throw');
  return { code, signal, stdout, isFatal };
}

// The first error is pending when the second is thrown, which Node-API refuses.
for (const args of ['[5, 10]', '[undefined, 10]', '[null, "10"]', '[{}, undefined]',
  '["cmd+foo", "10"]', '["", null]', '["+", {}]']) {
  test(`keyHold(...${args}) ends the process with the fatal error of the second throw`, async () => {
    assert.deepEqual(await outcomeOf(args),
      { code: null, signal: 'SIGABRT', stdout: '', isFatal: true });
  });
}

for (const [args, outcome] of [
  ['["a", 10]', 'true'], ['["a", "10"]', 'A number was expected'],
  ['["cmd+foo", 10]', 'keyHold: no valid key found in chord \'cmd+foo\''],
  ['[5]', usage],
]) {
  test(`keyHold(...${args}) does not end the process`, async () => {
    assert.deepEqual(await outcomeOf(args),
      { code: 0, signal: null, stdout: `${outcome}\n`, isFatal: false });
  });
}
