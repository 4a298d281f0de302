'use strict';
// getDisplaySize: the record of one display, which never fails for lack of a match.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene, builtIn } = require('./harness');

const second = { id: 2, frame: [1512, 82, 1440, 900], scale: 1, name: 'Second' };
const builtInRecord = {
  id: 1, width: 1512, height: 982, isMain: true, originX: 0, originY: 0, scaleFactor: 2,
  name: 'Built-in Display',
};
const secondRecord = {
  id: 2, width: 1440, height: 900, isMain: false, originX: 1512, originY: 0, scaleFactor: 1,
  name: 'Second',
};
const twoScreens = { screens: [builtIn, second] };

/** The second screen, which holds the active window, under the main display's identifier. */
const fallbackRecord = { ...secondRecord, id: 1, isMain: true };

test('no argument gives the record of the main display', (t) => {
  const mac = scene(t, twoScreens);
  assert.deepEqual(mac.addon.getDisplaySize(), builtInRecord);
});

test('the main display is the one that Quartz names, not the first screen', (t) => {
  const mac = scene(t, { ...twoScreens, mainDisplayId: 2 });
  assert.deepEqual(mac.addon.getDisplaySize(), { ...secondRecord, isMain: true });
});

test('the identifier of a secondary display gives its own record', (t) => {
  const mac = scene(t, twoScreens);
  assert.deepEqual(mac.addon.getDisplaySize(2), secondRecord);
});

test('an unknown identifier gives the screen with the active window under the main identifier',
  (t) => {
    const mac = scene(t, { ...twoScreens, mainScreen: 1 });
    assert.deepEqual(mac.addon.getDisplaySize(77), fallbackRecord);
  });

test('without an active window an unknown identifier gives the first screen', (t) => {
  const mac = scene(t, { ...twoScreens, mainScreen: null, mainDisplayId: 5 });
  assert.deepEqual(mac.addon.getDisplaySize(77), { ...builtInRecord, id: 5 });
});

test('a main display that no screen has gives the fallback too', (t) => {
  const mac = scene(t, { ...twoScreens, mainScreen: 1, mainDisplayId: 5 });
  assert.deepEqual(mac.addon.getDisplaySize(), { ...fallbackRecord, id: 5 });
});

test('no screens at all give zeros under the main identifier', (t) => {
  const mac = scene(t, { screens: [], mainScreen: null, mainDisplayId: 5 });
  const nothing = {
    id: 5, width: 0, height: 0, isMain: true, originX: 0, originY: 0, scaleFactor: 0,
    name: 'Display',
  };
  assert.deepEqual(mac.addon.getDisplaySize(), nothing);
  assert.deepEqual(mac.addon.getDisplaySize(2), nothing);
});

test('a string "1" counts as absent', (t) => {
  const mac = scene(t, { ...twoScreens, mainDisplayId: 2 });
  assert.equal(mac.addon.getDisplaySize('1').id, 2);
});

test('undefined, null, objects and bigints count as absent', (t) => {
  const mac = scene(t, { ...twoScreens, mainDisplayId: 2 });
  for (const odd of [undefined, null, {}, [1], true, 1n]) {
    assert.equal(mac.addon.getDisplaySize(odd).id, 2);
  }
});

test('-1 becomes 4294967295, which matches no display, so the fallback applies', (t) => {
  const mac = scene(t, { ...twoScreens, mainScreen: 1 });
  assert.deepEqual(mac.addon.getDisplaySize(-1), fallbackRecord);
});

test('-1 finds the display whose identifier is 4294967295', (t) => {
  const mac = scene(t, { screens: [builtIn, { ...second, id: 4294967295 }] });
  assert.deepEqual(mac.addon.getDisplaySize(-1), { ...secondRecord, id: 4294967295 });
});

test('identifiers are truncated and wrap around at 2^32', (t) => {
  const mac = scene(t, twoScreens);
  assert.deepEqual(mac.addon.getDisplaySize(2.9), secondRecord);
  assert.deepEqual(mac.addon.getDisplaySize(2 ** 32 + 2), secondRecord);
});

test('0 is an identifier like any other: no display has it, so the fallback applies', (t) => {
  const mac = scene(t, { ...twoScreens, mainScreen: 1 });
  assert.deepEqual(mac.addon.getDisplaySize(0), fallbackRecord);
  assert.deepEqual(mac.addon.getDisplaySize(NaN), fallbackRecord);
});

test('screens without an identifier are passed over', (t) => {
  const { id, ...nameless } = builtIn;
  const mac = scene(t, { screens: [nameless, second] });
  assert.deepEqual(mac.addon.getDisplaySize(2), secondRecord);
});

test('the first of two screens with one identifier is taken', (t) => {
  const mac = scene(t, { screens: [builtIn, second, { ...second, name: 'Mirror' }] });
  assert.equal(mac.addon.getDisplaySize(2).name, 'Second');
});

test('the record has its keys in the documented order, also in the fallback', (t) => {
  const mac = scene(t, twoScreens);
  const keys = [
    'id', 'width', 'height', 'isMain', 'originX', 'originY', 'scaleFactor', 'name',
  ];
  assert.deepEqual(Object.keys(mac.addon.getDisplaySize(2)), keys);
  assert.deepEqual(Object.keys(mac.addon.getDisplaySize(77)), keys);
});

test('extra arguments are ignored', (t) => {
  const mac = scene(t, twoScreens);
  assert.deepEqual(mac.addon.getDisplaySize(2, 1, 'more'), secondRecord);
});

const screenCalls = (label) => [
  ['-[NSScreen deviceDescription]', label],
  ['-[NSScreen frame]', label],
  ['-[NSScreen backingScaleFactor]', label],
  ['-[NSScreen localizedName]', label],
];
const primaryHeightCalls = [['+[NSScreen screens]'], ['-[NSScreen frame]', 'screen 0']];

test('the calls for a display that is found, in order', (t) => {
  const mac = scene(t, twoScreens);
  mac.addon.getDisplaySize(2);
  assert.deepEqual(mac.calls('js'), [
    ['CGMainDisplayID'],
    ['+[NSScreen screens]'], ...screenCalls('screen 0'), ...screenCalls('screen 1'),
    ...primaryHeightCalls,
  ]);
  assert.deepEqual(mac.calls('js'), mac.calls());
});

test('the calls of the fallback, in order', (t) => {
  const mac = scene(t, { ...twoScreens, mainScreen: 1 });
  mac.addon.getDisplaySize(77);
  assert.deepEqual(mac.calls(), [
    ['CGMainDisplayID'],
    ['+[NSScreen screens]'], ...screenCalls('screen 0'), ...screenCalls('screen 1'),
    ['+[NSScreen mainScreen]'], ...screenCalls('screen 1'),
    ...primaryHeightCalls,
  ]);
});
