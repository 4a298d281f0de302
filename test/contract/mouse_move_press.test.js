'use strict';
// mouseMove, mouseDown and mouseUp: every platform call, in order.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene } = require('./harness');
const { mouse, move } = require('./input_calls');
const { throwsUsage, throwsConversionError } = require('./exceptions');

test('mouseMove posts one move with button 0, sleeps nowhere and returns true', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.mouseMove(10, 20), true);
  assert.deepEqual(mac.calls(), [
    ['CGEventSourceCreate', -1],
    ['CGEventCreateMouseEvent', 'source', 5, [10, 20], 0],
    ['CGEventPost', 0, 'event'],
    ['CFRelease', 'event'],
    ['CFRelease', 'source'],
  ]);
});

test('mouseMove takes negative and fractional coordinates, and any other number', (t) => {
  const mac = scene(t);
  for (const [x, y] of [[-1440, -900], [0.5, 1.25], [-0, 5e-324], [NaN, Infinity]]) {
    mac.addon.mouseMove(x, y);
    assert.deepEqual(mac.calls().slice(-5), move(x, y));
  }
});

test('mouseMove(1) and mouseMove() throw "mouseMove requires (x, y)"', (t) => {
  const mac = scene(t);
  throwsUsage(mac, () => mac.addon.mouseMove(), 'mouseMove requires (x, y)');
  throwsUsage(mac, () => mac.addon.mouseMove(1), 'mouseMove requires (x, y)');
});

test('mouseMove ignores extra arguments', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.mouseMove(1, 2, 'left', {}), true);
  assert.deepEqual(mac.calls(), move(1, 2));
});

test('mouseMove moves to 0 where a coordinate is no number, and then throws', (t) => {
  const mac = scene(t);
  throwsConversionError(() => mac.addon.mouseMove('1', 2), 'number');
  throwsConversionError(() => mac.addon.mouseMove(1, undefined), 'number');
  throwsConversionError(() => mac.addon.mouseMove(null, {}), 'number');
  assert.deepEqual(mac.calls(), [...move(0, 2), ...move(1, 0), ...move(0, 0)]);
});

test('mouseDown("middle", 3, 4) posts exactly one event of type 25 with button 2, and no move',
  (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.mouseDown('middle', 3, 4), true);
    assert.deepEqual(mac.calls(), [
      ['CGEventSourceCreate', -1],
      ['CGEventCreateMouseEvent', 'source', 25, [3, 4], 2],
      ['CGEventPost', 0, 'event'],
      ['CFRelease', 'event'],
      ['CFRelease', 'source'],
    ]);
  });

for (const [name, type] of [['mouseDown', 1], ['mouseUp', 2]]) {
  const usage = `${name} requires (button, x, y)`;

  test(`${name} posts one event of type ${type} for the left button and returns true`, (t) => {
    const mac = scene(t);
    assert.equal(mac.addon[name]('left', -3.5, 4), true);
    assert.deepEqual(mac.calls(), mouse(type, -3.5, 4, 0));
  });

  test(`${name} throws its usage with fewer than three arguments`, (t) => {
    const mac = scene(t);
    for (const args of [[], ['left'], ['left', 1]]) {
      throwsUsage(mac, () => mac.addon[name](...args), usage);
    }
  });

  test(`${name} ignores extra arguments, a count and modifiers among them`, (t) => {
    const mac = scene(t);
    mac.addon[name]('left', 1, 2, 3, 'cmd');
    assert.deepEqual(mac.calls(), mouse(type, 1, 2, 0));
  });

  test(`${name} takes the left button and 0 for what is of the wrong type, and then throws`, (t) => {
    const mac = scene(t);
    throwsConversionError(() => mac.addon[name](1, 5, 6), 'string');
    throwsConversionError(() => mac.addon[name]('right', '5', 6), 'number');
    throwsConversionError(() => mac.addon[name]('right', 5, true), 'number');
    throwsConversionError(() => mac.addon[name](undefined, undefined, undefined), 'string');
    assert.deepEqual(mac.calls(), [
      ...mouse(type, 5, 6, 0),
      ...mouse(type + 2, 0, 6, 1),
      ...mouse(type + 2, 5, 0, 1),
      ...mouse(type, 0, 0, 0),
    ]);
  });
}
