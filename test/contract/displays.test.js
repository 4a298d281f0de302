'use strict';
// listDisplays: the attached displays in the global desktop space, y down.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene, builtIn } = require('./harness');

const above = { id: 2, frame: [0, 982, 1920, 1080], scale: 1, name: 'Above' };
const left = { id: 3, frame: [-1920, 0, 1920, 1080], scale: 1, name: 'Left' };
const below = { id: 4, frame: [100, -900, 1440, 900], scale: 1, name: 'Below' };

test('one built-in display of 1512 x 982 points at scale 2 gives one record', (t) => {
  const mac = scene(t, { screens: [builtIn] });
  assert.deepEqual(mac.addon.listDisplays(), [{
    id: 1, width: 1512, height: 982, isMain: true, originX: 0, originY: 0, scaleFactor: 2,
    name: 'Built-in Display',
  }]);
});

test('a display above the primary one has minus its own height as originY', (t) => {
  const mac = scene(t, { screens: [builtIn, above] });
  const record = mac.addon.listDisplays()[1];
  assert.deepEqual([record.originX, record.originY], [0, -1080]);
});

test('a display to the left of the primary one has a negative originX', (t) => {
  const mac = scene(t, { screens: [builtIn, left] });
  const record = mac.addon.listDisplays()[1];
  assert.deepEqual([record.originX, record.originY], [-1920, 982 - 1080]);
});

test('a display below the primary one has an originY greater than the difference of the heights',
  (t) => {
    const mac = scene(t, { screens: [builtIn, below] });
    const record = mac.addon.listDisplays()[1];
    assert.equal(record.originY, 982);
    assert.ok(record.originY > 982 - 900);
  });

test('exactly one record is main when the main display is among the screens', (t) => {
  const mac = scene(t, { screens: [builtIn, above, left], mainDisplayId: 3 });
  assert.deepEqual(mac.addon.listDisplays().map(({ id, isMain }) => [id, isMain]),
    [[1, false], [2, false], [3, true]]);
});

test('no record is main when the main display is not among the screens', (t) => {
  const mac = scene(t, { screens: [builtIn, above], mainDisplayId: 9 });
  assert.deepEqual(mac.addon.listDisplays().map(({ isMain }) => isMain), [false, false]);
});

test('a screen whose name is missing is listed as "Display"', (t) => {
  const mac = scene(t, { screens: [{ ...builtIn, name: null }] });
  assert.equal(mac.addon.listDisplays()[0].name, 'Display');
});

test('names beyond ASCII arrive whole, and an empty one stays empty', (t) => {
  const mac = scene(t, { screens: [{ ...builtIn, name: 'Écran 测试 🖥' }, { ...above, name: '' }] });
  assert.deepEqual(mac.addon.listDisplays().map(({ name }) => name), ['Écran 测试 🖥', '']);
});

test('a screen without an identifier is left out and leaves no hole', (t) => {
  const { id, ...nameless } = above;
  const mac = scene(t, { screens: [builtIn, nameless, left] });
  const records = mac.addon.listDisplays();
  assert.deepEqual(records.map((record) => record.id), [1, 3]);
  assert.deepEqual(Object.keys(records), ['0', '1']);
});

test('the primary screen gives its height even when it has no identifier itself', (t) => {
  const { id, ...nameless } = builtIn;
  const mac = scene(t, { screens: [nameless, above] });
  assert.deepEqual(mac.addon.listDisplays().map(({ originY }) => originY), [-1080]);
});

test('no screens give an empty array', (t) => {
  const mac = scene(t, { screens: [], mainDisplayId: 0 });
  assert.deepEqual(mac.addon.listDisplays(), []);
});

test('identifiers are unsigned 32-bit numbers', (t) => {
  const mac = scene(t, { screens: [{ ...builtIn, id: 4294967295 }], mainDisplayId: 4294967295 });
  const [record] = mac.addon.listDisplays();
  assert.deepEqual([record.id, record.isMain], [4294967295, true]);
});

test('fractions of points and of scale are kept', (t) => {
  const odd = { ...builtIn, frame: [0.5, 0.25, 1000.5, 800.125], scale: 1.5 };
  const mac = scene(t, { screens: [odd] });
  const [{ originX, originY, width, height, scaleFactor }] = mac.addon.listDisplays();
  assert.deepEqual([originX, originY, width, height, scaleFactor],
    [0.5, -0.25, 1000.5, 800.125, 1.5]);
});

test('a record has its keys in the documented order', (t) => {
  const mac = scene(t);
  assert.deepEqual(Object.keys(mac.addon.listDisplays()[0]),
    ['id', 'width', 'height', 'isMain', 'originX', 'originY', 'scaleFactor', 'name']);
});

test('a display that is attached or removed is seen by the next call', (t) => {
  const mac = scene(t, { screens: [builtIn] });
  assert.equal(mac.addon.listDisplays().length, 1);
  mac.change({ screens: [builtIn, above] });
  assert.equal(mac.addon.listDisplays().length, 2);
  mac.change({ screens: [above] });
  assert.deepEqual(mac.addon.listDisplays().map(({ id }) => id), [2]);
});

test('arguments are ignored', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.listDisplays('more', 2, {}).length, 1);
});

test('each call gives a new array of new records', (t) => {
  const mac = scene(t);
  const [first, second] = [mac.addon.listDisplays(), mac.addon.listDisplays()];
  assert.notEqual(first, second);
  assert.notEqual(first[0], second[0]);
});

test('the calls of one listing, in order', (t) => {
  const mac = scene(t, { screens: [builtIn, above] });
  mac.addon.listDisplays();
  assert.deepEqual(mac.calls(), [
    ['+[NSScreen screens]'],
    ['-[NSScreen deviceDescription]', 'screen 0'],
    ['-[NSScreen frame]', 'screen 0'],
    ['-[NSScreen backingScaleFactor]', 'screen 0'],
    ['-[NSScreen localizedName]', 'screen 0'],
    ['-[NSScreen deviceDescription]', 'screen 1'],
    ['-[NSScreen frame]', 'screen 1'],
    ['-[NSScreen backingScaleFactor]', 'screen 1'],
    ['-[NSScreen localizedName]', 'screen 1'],
    ['CGMainDisplayID'],
    ['+[NSScreen screens]'],
    ['-[NSScreen frame]', 'screen 0'],
  ]);
  assert.deepEqual(mac.calls('js'), mac.calls());
});
