'use strict';
// mouseClick: every platform call, in order.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene } = require('./harness');
const { mouse, move, pause } = require('./input_calls');
const { throwsUsage, throwsConversionError } = require('./exceptions');

const usage = 'mouseClick requires (button, x, y)';

/** A click with the left button. */
const click = (x, y, changes) =>
  [...mouse(1, x, y, 0, changes), ...pause(50_000), ...mouse(2, x, y, 0, changes)];
const leftClick = (x, y) => [...move(x, y), ...click(x, y)];

test('mouseClick("left", 10, 20) posts move, press with its click state untouched, 50 ms, release',
  (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.mouseClick('left', 10, 20), true);
    assert.deepEqual(mac.calls(), [
      ['CGEventSourceCreate', -1],
      ['CGEventCreateMouseEvent', 'source', 5, [10, 20], 0],
      ['CGEventPost', 0, 'event'],
      ['CFRelease', 'event'],
      ['CFRelease', 'source'],

      ['CGEventSourceCreate', -1],
      ['CGEventCreateMouseEvent', 'source', 1, [10, 20], 0],
      ['CGEventPost', 0, 'event'],
      ['CFRelease', 'event'],
      ['CFRelease', 'source'],

      ['usleep', 50000],

      ['CGEventSourceCreate', -1],
      ['CGEventCreateMouseEvent', 'source', 2, [10, 20], 0],
      ['CGEventPost', 0, 'event'],
      ['CFRelease', 'event'],
      ['CFRelease', 'source'],
    ]);
  });

test('a third click carries 3, a second one 2, the first none; 50 ms between all but the move',
  (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.mouseClick('right', 10, 20, 3), true);
    assert.deepEqual(mac.calls(), [
      ...move(10, 20),
      ...mouse(3, 10, 20, 1), ...pause(50_000), ...mouse(4, 10, 20, 1), ...pause(50_000),
      ...mouse(3, 10, 20, 1, { clickState: 2 }), ...pause(50_000),
      ...mouse(4, 10, 20, 1, { clickState: 2 }), ...pause(50_000),
      ...mouse(3, 10, 20, 1, { clickState: 3 }), ...pause(50_000),
      ...mouse(4, 10, 20, 1, { clickState: 3 }),
    ]);
  });

for (const count of [0, -1, -2147483648, 0.9, NaN, Infinity, -Infinity, 2 ** 32, 2 ** 31]) {
  test(`a count of ${count} posts only the move and returns true`, (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.mouseClick('left', 0, 0, count), true);
    assert.deepEqual(mac.calls(), move(0, 0));
  });
}

for (const [shown, count] of [
  ['"2"', '2'], ['undefined', undefined], ['null', null], ['true', true], ['an object', {}],
  ['2n', 2n],
]) {
  test(`a count that is ${shown} is ignored: one click`, (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.mouseClick('left', 5, 5, count), true);
    assert.deepEqual(mac.calls(), leftClick(5, 5));
  });
}

for (const [count, clicks] of [[1, 1], [1.9, 1], [2.9, 2], [2 ** 32 + 2, 2], [40, 40]]) {
  test(`a count of ${count} clicks ${clicks} times`, (t) => {
    const mac = scene(t);
    mac.addon.mouseClick('left', 5, 5, count);
    assert.equal(mac.callsTo('CGEventPost').length, 1 + 2 * clicks);
    assert.deepEqual(mac.callsTo('usleep'), Array(2 * clicks - 1).fill(['usleep', 50000]));
    assert.deepEqual(mac.callsTo('CGEventSetIntegerValueField').map((call) => call[3]),
      Array.from({ length: clicks }, (_, index) => index + 1).slice(1).flatMap((n) => [n, n]));
  });
}

for (const [modifiers, flags] of [
  ['shift', 0x20000], ['ctrl', 0x40000], ['alt', 0x80000], ['cmd', 0x100000], ['fn', 0x800000],
  ['cmd+shift', 0x120000], ['CMD+Shift', 0x120000], ['rshift', 0x20000],
  ['cmd++shift', 0x120000], ['+cmd', 0x100000], ['cmd+', 0x100000],
  ['hyper+cmd', 0x100000], ['a+cmd', 0x100000], ['cmd +shift', 0x20000],
]) {
  test(`with modifiers '${modifiers}' press and release have the flags ${flags.toString(16)}`,
    (t) => {
      const mac = scene(t);
      assert.equal(mac.addon.mouseClick('left', 1, 2, 1, modifiers), true);
      assert.deepEqual(mac.calls(), [...move(1, 2), ...click(1, 2, { flags })]);
    });
}

test('all events of a double click have the flags, after the click state', (t) => {
  const mac = scene(t);
  mac.addon.mouseClick('left', 1, 2, 2, 'cmd');
  assert.deepEqual(mac.calls(), [
    ...move(1, 2),
    ...click(1, 2, { flags: 0x100000 }), ...pause(50_000),
    ...click(1, 2, { clickState: 2, flags: 0x100000 }),
  ]);
});

for (const modifiers of ['', '+', 'hyper', 'hyper+foo', ' cmd', 'cmd shift', 'capslock']) {
  test(`modifiers '${modifiers}' are none: press and release keep their own flags`, (t) => {
    const mac = scene(t);
    mac.addon.mouseClick('left', 1, 2, 1, modifiers);
    assert.deepEqual(mac.calls(), leftClick(1, 2));
  });
}

for (const [shown, modifiers] of [
  ['undefined', undefined], ['null', null], ['a number', 7], ['an array', ['cmd']],
  ['a String object', new String('cmd')],
]) {
  test(`modifiers that are ${shown} are ignored`, (t) => {
    const mac = scene(t);
    mac.addon.mouseClick('left', 1, 2, 1, modifiers);
    assert.deepEqual(mac.calls(), leftClick(1, 2));
  });
}

test('LEFT, a count of 1 and undefined as modifiers click the left button once', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.mouseClick('LEFT', 1, 2, 1, undefined), true);
  assert.deepEqual(mac.calls(), leftClick(1, 2));
});

test('modifiers count also when the count is not a number', (t) => {
  const mac = scene(t);
  mac.addon.mouseClick('left', 1, 2, undefined, 'cmd');
  assert.deepEqual(mac.calls(), [...move(1, 2), ...click(1, 2, { flags: 0x100000 })]);
});

test('coordinates reach the system unchanged', (t) => {
  const mac = scene(t);
  for (const [x, y] of [[-1920.5, -0.25], [0.1, 1e300], [-0, NaN], [Infinity, -Infinity]]) {
    mac.addon.mouseClick('left', x, y, 0);
    assert.deepEqual(mac.calls().slice(-5), move(x, y));
  }
});

test('with fewer than three arguments mouseClick throws its usage and posts nothing', (t) => {
  const mac = scene(t);
  for (const args of [[], ['left'], ['left', 1]]) {
    throwsUsage(mac, () => mac.addon.mouseClick(...args), usage);
  }
});

test('extra arguments are ignored', (t) => {
  const mac = scene(t);
  mac.addon.mouseClick('left', 1, 2, 1, '', 'cmd', {});
  assert.deepEqual(mac.calls(), leftClick(1, 2));
});

test('a button that is no string clicks the left one, and then the error is thrown', (t) => {
  const mac = scene(t);
  for (const odd of [1, undefined, null, {}, ['right'], new String('right'), Symbol('right')]) {
    const before = mac.calls().length;
    throwsConversionError(() => mac.addon.mouseClick(odd, 1, 2), 'string');
    assert.deepEqual(mac.calls().slice(before), leftClick(1, 2));
  }
});

test('a coordinate that is no number counts as 0, and then the error is thrown', (t) => {
  const mac = scene(t);
  throwsConversionError(() => mac.addon.mouseClick('left', '1', 2), 'number');
  throwsConversionError(() => mac.addon.mouseClick('left', 1, null), 'number');
  throwsConversionError(() => mac.addon.mouseClick('left', {}, 3n, 1, 'cmd'), 'number');
  assert.deepEqual(mac.calls(), [
    ...leftClick(0, 2),
    ...leftClick(1, 0),
    ...move(0, 0), ...click(0, 0, { flags: 0x100000 }),
  ]);
});

test('of several errors the first is thrown', (t) => {
  const mac = scene(t);
  throwsConversionError(() => mac.addon.mouseClick(1, '1', '2'), 'string');
  assert.deepEqual(mac.calls(), leftClick(0, 0));
});

test('arguments are not converted by their own methods', (t) => {
  const mac = scene(t);
  const trap = { valueOf() { throw new Error('called'); }, toString() { throw new Error('called'); } };
  throwsConversionError(() => mac.addon.mouseClick(trap, trap, trap, trap, trap), 'string');
  assert.deepEqual(mac.calls(), leftClick(0, 0));
});
