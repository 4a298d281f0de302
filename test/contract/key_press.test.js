'use strict';
// keyPress: every platform call, in order; and how it reads a chord.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene } = require('./harness');
const { tap, pause } = require('./input_calls');
const { throwsUsage, throwsPlainError } = require('./exceptions');

const usage = 'keyPress requires (chord: string)';
const noKeyIn = (chord) => `keyPress: no valid key found in chord '${chord}'`;

test('keyPress("cmd+c") posts two events for key code 8, both with flags 0x100000', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.keyPress('cmd+c'), true);
  assert.deepEqual(mac.calls(), [
    ['CGEventSourceCreate', -1],
    ['CGEventCreateKeyboardEvent', 'source', 8, true],
    ['CGEventSetFlags', 'event', 0x100000],
    ['CGEventPost', 0, 'event'],
    ['CFRelease', 'event'],
    ['CFRelease', 'source'],

    ['CGEventSourceCreate', -1],
    ['CGEventCreateKeyboardEvent', 'source', 8, false],
    ['CGEventSetFlags', 'event', 0x100000],
    ['CGEventPost', 0, 'event'],
    ['CFRelease', 'event'],
    ['CFRelease', 'source'],
  ]);
});

test('keyPress("a") posts key code 0 down and up and sets no flags', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.keyPress('a'), true);
  assert.deepEqual(mac.calls(), tap(0));
  assert.deepEqual(mac.callsTo('CGEventSetFlags'), []);
});

test('keyPress("a", 3) posts six events with two pauses of 20 ms between the taps', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.keyPress('a', 3), true);
  assert.deepEqual(mac.calls(),
    [...tap(0), ...pause(20_000), ...tap(0), ...pause(20_000), ...tap(0)]);
});

for (const repeat of [0, -5, NaN, '3', 1.9, 1, undefined, null, true, {}, [3], Infinity, -Infinity,
  2 ** 32, 2 ** 31, 3n]) {
  const shown = typeof repeat === 'string' ? `"${repeat}"`
    : typeof repeat === 'object' ? JSON.stringify(repeat) : `${String(repeat)} (${typeof repeat})`;
  test(`keyPress("a", ${shown}) taps once`, (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.keyPress('a', repeat), true);
    assert.deepEqual(mac.calls(), tap(0));
  });
}

for (const [repeat, taps] of [[2, 2], [2.9, 2], [2 ** 32 + 2, 2], [100, 100]]) {
  test(`keyPress("a", ${repeat}) taps ${taps} times`, (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.keyPress('a', repeat), true);
    assert.equal(mac.callsTo('CGEventPost').length, 2 * taps);
    assert.deepEqual(mac.callsTo('usleep'), Array(taps - 1).fill(['usleep', 20000]));
  });
}

test('each tap of a chord has its flags', (t) => {
  const mac = scene(t);
  mac.addon.keyPress('cmd+c', 2);
  assert.deepEqual(mac.calls(), [...tap(8, 0x100000), ...pause(20_000), ...tap(8, 0x100000)]);
});

test('keyPress("shift") posts key code 56 down and up, both with flags 0x20000', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.keyPress('shift'), true);
  assert.deepEqual(mac.calls(), tap(56, 0x20000));
});

const chords = [
  ['cmd+c', 0x100000, 8], ['Cmd + Shift + T', 0x120000, 17], ['A', 0, 0], ['shift', 0x20000, 56],
  ['ctrl+shift', 0x60000, 56], ['shift+ctrl', 0x60000, 59], ['rcommand', 0x100000, 54],
  ['a+b', 0, 11], ['shift+a+ctrl', 0x60000, 0], ['cmd+foo+a', 0x100000, 0],
  ['foo+cmd', 0x100000, 55], ['cmd++', 0x100000, 55], ['page up', 0, 116], ['rshift', 0x20000, 60],
  ['rshift+a', 0x20000, 0], ['f 1', 0, 122], ['enter', 0, 36], ['numpadenter', 0, 76],
  ['delete', 0, 51], ['forwarddelete', 0, 117], ['capslock', 0, 57], ['\\', 0, 42], ['fn', 0x800000, 63],
];
for (const [chord, flags, code] of chords) {
  test(`the chord '${chord}' presses key ${code} with flags ${flags.toString(16)}`, (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.keyPress(chord), true);
    assert.deepEqual(mac.calls(), tap(code, flags || undefined));
  });
}

const keyless = ['cmd+foo', '', '+', '   ', '!', 'é', 'a\t', 'f21', 'Cmd + Foo', 'a\0', '日本', '‚'];
for (const chord of keyless) {
  test(`the chord ${JSON.stringify(chord)} has no key: an Error that quotes it as it came`, (t) => {
    const mac = scene(t);
    throwsPlainError(mac, () => mac.addon.keyPress(chord), noKeyIn(chord));
    throwsPlainError(mac, () => mac.addon.keyPress(chord, 3), noKeyIn(chord));
  });
}

test('the message for an empty chord ends in two apostrophes', (t) => {
  const mac = scene(t);
  throwsPlainError(mac, () => mac.addon.keyPress(''),
    'keyPress: no valid key found in chord \'\'');
});

test('keyPress without arguments and keyPress(5) throw the usage, as a TypeError', (t) => {
  const mac = scene(t);
  throwsUsage(mac, () => mac.addon.keyPress(), usage);
  for (const odd of [5, undefined, null, {}, ['a'], new String('a'), Symbol('a'), true]) {
    throwsUsage(mac, () => mac.addon.keyPress(odd, 2), usage);
  }
});

test('extra arguments are ignored', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.keyPress('a', 1, 9, 'cmd'), true);
  assert.deepEqual(mac.calls(), tap(0));
});
