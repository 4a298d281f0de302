'use strict';
// calculateTargetSize: two budgets, 1568 pixels an edge and 1568 tiles of 28 x 28 pixels.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene } = require('./harness');

const usage = 'calculateTargetSize(physWidth: number, physHeight: number)';

function size(width, height) {
  return { width, height };
}

const workedValues = [
  [[1000, 1000], [1000, 1000]],
  [[1120, 1120], [1092, 1092]],
  [[1568, 1568], [1092, 1092]],
  [[1920, 1080], [1456, 819]],
  [[2880, 1800], [1390, 868]],
  [[3024, 1964], [1372, 891]],
  [[3840, 2160], [1456, 819]],
  [[1568, 28], [1568, 28]],
  [[1569, 1], [1568, 1]],
  [[1, 100000], [1, 1568]],
];

for (const [from, to] of workedValues) {
  test(`${from.join(' x ')} becomes ${to.join(' x ')}`, (t) => {
    const mac = scene(t);
    assert.deepEqual(mac.addon.calculateTargetSize(...from), size(...to));
  });
}

test('a size inside both budgets is returned unchanged', (t) => {
  const mac = scene(t);
  assert.deepEqual(mac.addon.calculateTargetSize(1400, 784), size(1400, 784));
  assert.deepEqual(mac.addon.calculateTargetSize(1, 1), size(1, 1));
});

test('1120 x 1120 is inside the edge budget but over the tile budget, and is reduced', (t) => {
  const mac = scene(t);
  assert.ok((1120 / 28) ** 2 > 1568);
  assert.deepEqual(mac.addon.calculateTargetSize(1120, 1120), size(1092, 1092));
});

test('zero or negative inputs give 0 x 0, not an error', (t) => {
  const mac = scene(t);
  for (const [width, height] of [[0, 0], [0, 100], [100, 0], [-1, 100], [100, -1], [-5, -5]]) {
    assert.deepEqual(mac.addon.calculateTargetSize(width, height), size(0, 0));
  }
});

test('non-integral inputs are truncated first', (t) => {
  const mac = scene(t);
  assert.deepEqual(mac.addon.calculateTargetSize(1920.9, 1080.2), size(1456, 819));
  assert.deepEqual(mac.addon.calculateTargetSize(0.9, 100), size(0, 0));
  assert.deepEqual(mac.addon.calculateTargetSize(-0.9, 100), size(0, 0));
});

test('inputs of 2^31 or more wrap to negative values and give 0 x 0', (t) => {
  const mac = scene(t);
  assert.deepEqual(mac.addon.calculateTargetSize(2 ** 31, 100), size(0, 0));
  assert.deepEqual(mac.addon.calculateTargetSize(100, 2 ** 31), size(0, 0));
});

test('inputs of 2^32 and more wrap around', (t) => {
  const mac = scene(t);
  assert.deepEqual(mac.addon.calculateTargetSize(2 ** 32 + 640, 2 ** 32 + 480), size(640, 480));
});

test('NaN and the infinities count as 0', (t) => {
  const mac = scene(t);
  for (const odd of [NaN, Infinity, -Infinity]) {
    assert.deepEqual(mac.addon.calculateTargetSize(odd, 100), size(0, 0));
    assert.deepEqual(mac.addon.calculateTargetSize(100, odd), size(0, 0));
  }
});

test('a very thin input keeps its short edge at 1', (t) => {
  const mac = scene(t);
  assert.deepEqual(mac.addon.calculateTargetSize(1, 100000), size(1, 1568));
  assert.deepEqual(mac.addon.calculateTargetSize(100000, 1), size(1568, 1));
  assert.deepEqual(mac.addon.calculateTargetSize(2 ** 31 - 1, 1), size(1568, 1));
});

test('the result has width and height, in this order', (t) => {
  const mac = scene(t);
  assert.deepEqual(Object.keys(mac.addon.calculateTargetSize(10, 20)), ['width', 'height']);
});

test('fewer than two arguments, or one that is no number, throw an Error with the usage', (t) => {
  const mac = scene(t);
  for (const args of [[], [100], ['100', 100], [100, '100'], [100, null], [{}, 100],
    [undefined, 100], [100, 10n], [true, 100]]) {
    assert.throws(() => mac.addon.calculateTargetSize(...args), (error) => {
      assert.equal(Object.getPrototypeOf(error), Error.prototype);
      assert.equal(error.message, usage);
      return true;
    });
  }
});

test('extra arguments are ignored', (t) => {
  const mac = scene(t);
  assert.deepEqual(mac.addon.calculateTargetSize(10, 20, 'more', {}), size(10, 20));
});

test('the rule asks nothing of the platform', (t) => {
  const mac = scene(t);
  mac.addon.calculateTargetSize(2880, 1800);
  assert.deepEqual(mac.calls(), []);
});
