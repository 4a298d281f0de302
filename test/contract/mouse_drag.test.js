'use strict';
// mouseDrag: every platform call, in order.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene } = require('./harness');
const { mouse, move, pause } = require('./input_calls');
const { throwsUsage, throwsConversionError } = require('./exceptions');

const usage = 'mouseDrag requires (startX, startY, endX, endY)';

/** The calls of a drag over ten points after its start, by default with the left button. */
function drag(start, points, end, [button, down, up, dragged] = [0, 1, 2, 6]) {
  return [
    ...move(...start), ...pause(50_000),
    ...mouse(down, ...start, button), ...pause(50_000),
    ...points.flatMap(([x, y]) => [...mouse(dragged, x, y, button), ...pause(10_000)]),
    ...pause(50_000),
    ...mouse(up, ...end, button),
  ];
}

const tenths = Array.from({ length: 10 }, (_, index) => index + 1);
const straight = tenths.map((tenth) => [10 * tenth, 5 * tenth]);

test('mouseDrag(0, 0, 100, 50) posts move, press, ten drags and the release, left button', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.mouseDrag(0, 0, 100, 50), true);
  assert.deepEqual(mac.calls(), drag([0, 0], straight, [100, 50]));
  assert.deepEqual(mac.callsTo('CGEventCreateMouseEvent').map(([, , type]) => type),
    [5, 1, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 2]);
});

test('the pauses of a drag are 250 ms in all', (t) => {
  const mac = scene(t);
  mac.addon.mouseDrag(0, 0, 100, 50);
  assert.equal(mac.callsTo('usleep').reduce((sum, [, pause_]) => sum + pause_, 0), 250_000);
});

test('with "right" the press, drags and release are of button 1, the move of button 0', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.mouseDrag(0, 0, 100, 50, 'right'), true);
  assert.deepEqual(mac.calls(), drag([0, 0], straight, [100, 50], [1, 3, 4, 7]));
});

for (const [shown, button] of [
  ['a number', 1], ['undefined', undefined], ['null', null], ['an object', {}],
  ['a String object', new String('right')],
]) {
  test(`a button that is ${shown} is ignored: the left one`, (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.mouseDrag(0, 0, 100, 50, button), true);
    assert.deepEqual(mac.calls(), drag([0, 0], straight, [100, 50]));
  });
}

test('a drag whose start is its end posts all thirteen events there', (t) => {
  const mac = scene(t);
  mac.addon.mouseDrag(7.5, -8, 7.5, -8);
  assert.deepEqual(mac.calls(), drag([7.5, -8], Array(10).fill([7.5, -8]), [7.5, -8]));
});

test('negative and fractional coordinates pass unchanged', (t) => {
  const mac = scene(t);
  mac.addon.mouseDrag(-1000.5, 0.25, 999.5, -0.75);
  const points = mac.callsTo('CGEventCreateMouseEvent').map(([, , , point]) => point);
  assert.deepEqual(points.slice(0, 2), [[-1000.5, 0.25], [-1000.5, 0.25]]);
  assert.deepEqual(points.slice(-2), [[999.5, -0.75], [999.5, -0.75]]);
});

// In exact arithmetic, rounded once; the last point is a plain sum, and misses the end.
test('the points of a drag are rounded once each, and the release is exactly at the end', (t) => {
  const mac = scene(t);
  mac.addon.mouseDrag(518.6, 0.1, -1969.43, 0.7);
  const points = mac.callsTo('CGEventCreateMouseEvent').slice(2).map(([, , , point]) => point);
  assert.deepEqual(points, [
    [269.79699999999997, 0.16], [20.993999999999954, 0.22], [-227.809, 0.27999999999999997],
    [-476.61200000000014, 0.34], [-725.4150000000001, 0.4], [-974.2180000000001, 0.45999999999999996],
    [-1223.021, 0.52], [-1471.8240000000003, 0.58], [-1720.6270000000002, 0.64],
    [-1969.4300000000003, 0.7],
    [-1969.43, 0.7],
  ]);
});

test('with fewer than four arguments mouseDrag throws its usage and posts nothing', (t) => {
  const mac = scene(t);
  for (const args of [[], [1], [1, 2], [1, 2, 3]]) {
    throwsUsage(mac, () => mac.addon.mouseDrag(...args), usage);
  }
});

for (let position = 0; position < 4; ++position) {
  test(`a drag whose argument ${position} is no number runs with 0 there, and then throws`, (t) => {
    const mac = scene(t);
    const args = [0, 0, 0, 0];
    args[position] = '100';
    throwsConversionError(() => mac.addon.mouseDrag(...args), 'number');
    assert.deepEqual(mac.calls(), drag([0, 0], Array(10).fill([0, 0]), [0, 0]));
  });
}

test('extra arguments are ignored', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.mouseDrag(0, 0, 100, 50, 'left', 'cmd'), true);
  assert.deepEqual(mac.calls(), drag([0, 0], straight, [100, 50]));
});
