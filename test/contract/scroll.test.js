'use strict';
// scroll: every platform call, in order.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene } = require('./harness');
const { move, wheel, pause } = require('./input_calls');
const { throwsUsage, throwsConversionError } = require('./exceptions');

const usage = 'scroll requires (deltaX, deltaY)';

test('scroll(0, -3) posts one wheel event in lines, vertical -3 and horizontal 0, and no move',
  (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.scroll(0, -3), true);
    assert.deepEqual(mac.calls(), [
      ['CGEventSourceCreate', -1],
      ['CGEventCreateScrollWheelEvent', 'source', 1, 2, [-3, 0]],
      ['CGEventPost', 0, 'event'],
      ['CFRelease', 'event'],
      ['CFRelease', 'source'],
    ]);
  });

test('scroll(2, 0, 100, 200) posts a move there, waits 10 ms, then turns the second wheel by 2',
  (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.scroll(2, 0, 100, 200), true);
    assert.deepEqual(mac.calls(), [...move(100, 200), ...pause(10_000), ...wheel(0, 2)]);
  });

test('the place may be anywhere: negative, fractional', (t) => {
  const mac = scene(t);
  mac.addon.scroll(0, 1, -1440.5, -0.25);
  assert.deepEqual(mac.calls(), [...move(-1440.5, -0.25), ...pause(10_000), ...wheel(1, 0)]);
});

for (const [shown, place] of [
  ['x alone', [100]], ['a string for y', [100, '200']], ['a string for x', ['100', 200]],
  ['undefined for both', [undefined, undefined]], ['null for y', [100, null]],
  ['an object for x', [{ x: 1 }, 2]],
]) {
  test(`scroll(1, 1, ...) with ${shown} does not move the pointer`, (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.scroll(1, 1, ...place), true);
    assert.deepEqual(mac.calls(), wheel(1, 1));
  });
}

test('scroll(0, 1000) posts one event: nothing is split', (t) => {
  const mac = scene(t);
  mac.addon.scroll(0, 1000);
  assert.deepEqual(mac.calls(), wheel(1000, 0));
});

for (const [given, lines] of [
  [1.9, 1], [-1.9, -1], [0.5, 0], [-0, 0], [NaN, 0], [Infinity, 0], [-Infinity, 0],
  [2147483647, 2147483647], [-2147483648, -2147483648], [2147483648, -2147483648],
  [2 ** 32 + 5, 5],
]) {
  test(`an amount of ${given} turns a wheel by ${lines} lines`, (t) => {
    const mac = scene(t);
    mac.addon.scroll(given, 0);
    mac.addon.scroll(0, given);
    assert.deepEqual(mac.calls(), [...wheel(0, lines), ...wheel(lines, 0)]);
  });
}

test('with fewer than two arguments scroll throws its usage and posts nothing', (t) => {
  const mac = scene(t);
  throwsUsage(mac, () => mac.addon.scroll(), usage);
  throwsUsage(mac, () => mac.addon.scroll(1), usage);
});

test('an amount that is no number counts as 0, and then the error is thrown', (t) => {
  const mac = scene(t);
  throwsConversionError(() => mac.addon.scroll('1', 2), 'number');
  throwsConversionError(() => mac.addon.scroll(1, undefined), 'number');
  throwsConversionError(() => mac.addon.scroll(null, 2n, 3, 4), 'number');
  assert.deepEqual(mac.calls(),
    [...wheel(2, 0), ...wheel(0, 1), ...move(3, 4), ...pause(10_000), ...wheel(0, 0)]);
});

test('extra arguments are ignored', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.scroll(1, 2, 3, 4, 'cmd'), true);
  assert.deepEqual(mac.calls(), [...move(3, 4), ...pause(10_000), ...wheel(2, 1)]);
});
