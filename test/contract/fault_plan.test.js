'use strict';
// Any single platform call may fail: the outcome is a documented one each time, and nothing is left
// over. Each function is run once for every call that it makes, with that call failing.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { failEachCall } = require('./failing_calls');
const { scene, builtIn, jpegText } = require('./harness');

const second = { id: 2, frame: [1512, 82, 1440, 900], scale: 1, name: 'Second' };
const setting = {
  screens: [builtIn, second],
  content: { applications: [{ bundleId: 'com.a' }, { bundleId: 'com.b' }] },
  mainScreen: 1,
};

const builtInRecord = {
  id: 1, width: 1512, height: 982, isMain: true, originX: 0, originY: 0, scaleFactor: 2,
  name: 'Built-in Display',
};
const secondRecord = {
  id: 2, width: 1440, height: 900, isMain: false, originX: 1512, originY: 0, scaleFactor: 1,
  name: 'Second',
};
/** The records with what a failed reading of the primary screen's height makes of them. */
const withoutPrimaryHeight = (record) => ({ ...record, originY: record.originY - 982 });
const contentFailures = [
  'Failed to get shareable content: content refused',
  'No display found',
];
const displayFailures = [
  ...contentFailures,
  'Screenshot capture failed: capture refused',
  'Failed to encode screenshot to JPEG',
];
const regionFailures = [
  ...contentFailures,
  'Region capture failed: capture refused',
  'Failed to encode region screenshot to JPEG',
];

function captured(displayId, width, height, geometry) {
  return { base64: jpegText(), width, height, ...geometry, displayId };
}

const functions = [
  {
    name: 'listDisplays',
    call: (addon) => addon.listDisplays(),
    results: [
      [builtInRecord, secondRecord],
      [],
      [builtInRecord], [secondRecord],
      [{ ...builtInRecord, name: 'Display' }, secondRecord],
      [builtInRecord, { ...secondRecord, name: 'Display' }],
      [{ ...builtInRecord, isMain: false }, secondRecord],
      [withoutPrimaryHeight(builtInRecord), withoutPrimaryHeight(secondRecord)],
    ],
    failures: [],
  },
  {
    name: 'getDisplaySize',
    call: (addon) => addon.getDisplaySize(),
    results: [
      builtInRecord,
      { ...builtInRecord, name: 'Display' },
      withoutPrimaryHeight(builtInRecord),
      // Not found: the screen with the active window, under the main display's identifier.
      { ...secondRecord, id: 1, isMain: true },
      { ...secondRecord, id: 0, isMain: true },
    ],
    failures: [],
  },
  {
    name: 'getDisplaySize of an unknown display',
    call: (addon) => addon.getDisplaySize(77),
    results: [
      { ...secondRecord, id: 1, isMain: true },
      { ...secondRecord, id: 0, isMain: true },
      { ...secondRecord, id: 1, isMain: true, name: 'Display' },
      withoutPrimaryHeight({ ...secondRecord, id: 1, isMain: true }),
      builtInRecord,  // no active window: the first screen
    ],
    failures: [],
  },
  {
    name: 'captureDisplay',
    call: (addon) => addon.captureDisplay(['com.a', 'com.b'], 0.5),
    results: [
      captured(1, 1372, 891,
        { displayWidth: 1512, displayHeight: 982, originX: 0, originY: 0 }),
      captured(1, 1372, 891,
        { displayWidth: 1512, displayHeight: 982, originX: 0, originY: -982 }),
    ],
    failures: displayFailures,
  },
  {
    name: 'captureRegion',
    call: (addon) => addon.captureRegion(['com.a'], 0, 0, 10, 10, 20, 30, 0.5),
    results: [{ base64: jpegText(), width: 20, height: 30 }],
    failures: regionFailures,
  },
];

for (const { name, call, results, failures } of functions) {
  test(`${name} has a documented outcome whichever platform call fails`, async (t) => {
    const reached = await failEachCall(t, {
      settingOf: () => setting, call: ({ addon }) => call(addon), results, failures,
    });
    assert.ok(reached > 2, 'the plan reached hardly any call');
  });
}

test('a region capture makes a dozen different calls that may fail', async (t) => {
  const mac = scene(t, setting);
  await mac.addon.captureRegion([], 0, 0, 10, 10, 20, 30);
  assert.ok(new Set(mac.failableCalls()).size >= 12, mac.failableCalls().join('\n'));
});
