'use strict';
// getCursorPosition: where the pointer is, in the space that the mouse functions take.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene } = require('./harness');

test('the location of an empty event is the position, and the event is released', (t) => {
  const mac = scene(t, { cursor: [12.5, -7] });
  assert.deepEqual(mac.addon.getCursorPosition(), { x: 12.5, y: -7 });
  assert.deepEqual(mac.calls(), [
    ['CGEventCreate', 'nil'],
    ['CGEventGetLocation', 'event'],
    ['CFRelease', 'event'],
  ]);
});

test('the position has x and then y and nothing else, anew on each call', (t) => {
  const mac = scene(t, { cursor: [1, 2] });
  const first = mac.addon.getCursorPosition();
  assert.deepEqual(Object.entries(first), [['x', 1], ['y', 2]]);
  assert.equal(Object.getPrototypeOf(first), Object.prototype);
  first.x = 99;
  assert.deepEqual(mac.addon.getCursorPosition(), { x: 1, y: 2 });
});

test('right after mouseMove(a, b) the position is { x: a, y: b }', (t) => {
  const mac = scene(t, { cursor: [500, 500] });
  for (const [a, b] of [[10, 20], [-1440.5, 0.25], [0, 0]]) {
    mac.addon.mouseMove(a, b);
    assert.deepEqual(mac.addon.getCursorPosition(), { x: a, y: b });
  }
});

test('a position that was read can be moved to unchanged', (t) => {
  const mac = scene(t, { cursor: [0.1, -1e-9] });
  const { x, y } = mac.addon.getCursorPosition();
  mac.addon.mouseMove(x, y);
  assert.deepEqual(mac.callsTo('CGEventCreateMouseEvent')[0][3], [0.1, -1e-9]);
});

test('when the system makes no event the position is 0, 0', (t) => {
  const mac = scene(t, { cursor: [12, 34], failing: ['CGEventCreate'] });
  assert.deepEqual(mac.addon.getCursorPosition(), { x: 0, y: 0 });
  assert.deepEqual(mac.calls(), [['CGEventCreate', 'nil']]);
});

test('arguments are ignored', (t) => {
  const mac = scene(t, { cursor: [3, 4] });
  assert.deepEqual(mac.addon.getCursorPosition(1, 'x', {}), { x: 3, y: 4 });
});
