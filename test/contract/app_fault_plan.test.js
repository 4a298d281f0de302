'use strict';
// Any single platform call about applications, windows, clipboard and permissions may fail: the
// outcome is a documented one each time, and nothing is left over. Each function is run once for
// every call that may fail, with that call failing.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { failEachCall } = require('./failing_calls');
const { builtIn, shortTimeouts, windowEntry } = require('./harness');

const running = [
  { pid: 11, bundleId: 'com.a', name: 'Alpha' },
  { pid: 12, bundleId: 'com.b', name: 'Beta', isHidden: true },
];
const alpha = { bundleId: 'com.a', displayName: 'Alpha', pid: 11 };
const beta = { bundleId: 'com.b', displayName: 'Beta', pid: 12 };
const window = (pid, bounds) => windowEntry({ pid, layer: 0, alpha: 1, name: 'x', bounds });

const installedItem = (path, displayName) => ({ path, displayName });
const installed = (bundleId, displayName, path) => ({ bundleId, displayName, path });
const mail = installed('com.mail', 'Mail', '/Applications/Mail.app');
const agent = installed('com.agent', 'Agent', '/Applications/Agent.app');
const daemon = installed('com.daemon', 'Daemon', '/Applications/Daemon.app');

const first = '/Applications/Delta.app';
const second = '/System/Applications/Delta.app';

const setting = {
  running,
  frontmost: 11,
  screens: [builtIn, { id: 2, frame: [1512, 0, 800, 600], scale: 1, name: 'Second' }],
  windows: [
    window(11, [1600, 500, 100, 100]), window(12, [1600, 500, 100, 100]),
    window(12, [-500, 0, 10, 10]),
  ],
  locations: { 'com.c': '/C.app' },
  files: [first, second],
  bundles: {
    '/C.app': { bundleId: 'com.c' },
    [first]: { bundleId: 'com.delta' },
    [second]: { bundleId: 'com.system.delta' },
    [mail.path]: { bundleId: 'com.mail', info: {} },
    [agent.path]: { bundleId: 'com.agent', info: { LSUIElement: true } },
    [daemon.path]: { bundleId: 'com.daemon', info: { LSBackgroundOnly: true } },
  },
  displayNames: { '/C.app': 'Charlie', [first]: 'Delta!', [second]: 'System Delta' },
  query: { results: [mail, agent, daemon].map((app) => installedItem(app.path, app.displayName)) },
  clipboard: { text: 'before' },
  isTrusted: true,
  mayReadScreen: true,
};

const requestsOf = (mac, message) =>
  mac.callsTo(`-[NSRunningApplication ${message}]`).map(([, which]) => which);

const windowA = { bundleId: 'com.a', pid: 11, x: 1600, y: 500, w: 100, h: 100, displayId: 2 };
const windowB = { ...windowA, bundleId: 'com.b', pid: 12 };
const windowOff = { ...windowB, x: -500, y: 0, w: 10, h: 10, displayId: 1 };

const functions = [
  {
    name: 'listRunningApps',
    call: ({ addon }) => addon.listRunningApps(),
    calls: 7,
    results: [
      [alpha, beta],
      [],
      [beta], [{ ...alpha, bundleId: '' }, beta], [{ ...alpha, displayName: '' }, beta],
      [alpha], [alpha, { ...beta, bundleId: '' }], [alpha, { ...beta, displayName: '' }],
    ],
  },
  {
    name: 'getFrontmostApp',
    call: ({ addon }) => addon.getFrontmostApp(),
    calls: 4,
    results: [alpha, null, { ...alpha, bundleId: '' }, { ...alpha, displayName: '' }],
  },
  {
    name: 'listInstalledApps',
    call: async (mac) => {
      const apps = await mac.addon.listInstalledApps();
      await mac.until(() => mac.failableCalls().length > 0);
      return apps;
    },
    calls: 19,
    // The first one starts the query: when that fails, nobody answers.
    settingOf: (failing) => (failing === 1 ? { ...setting, ...shortTimeouts } : setting),
    results: [
      [mail],
      [],
      // What cannot be read says nothing.
      [mail, agent], [mail, daemon],
    ],
  },
  {
    name: 'resolveAppName of a running application',
    call: ({ addon }) => addon.resolveAppName('BETA'),
    calls: 5,
    results: [{ bundleId: 'com.b', displayName: 'Beta' }, null],
  },
  {
    name: 'resolveAppName of a bundle identifier',
    call: ({ addon }) => addon.resolveAppName('com.c'),
    calls: 10,
    results: [
      { bundleId: 'com.c', displayName: 'Charlie' },
      null,
      { bundleId: 'com.c', displayName: 'com.c' },
    ],
  },
  {
    name: 'resolveAppName of a name in the folders',
    call: ({ addon }) => addon.resolveAppName('Delta'),
    calls: 10,
    results: [
      { bundleId: 'com.delta', displayName: 'Delta!' },
      { bundleId: 'com.delta', displayName: 'Delta' },
      { bundleId: 'com.system.delta', displayName: 'System Delta' },
    ],
  },
  {
    name: 'appUnderPoint',
    call: ({ addon }) => addon.appUnderPoint(1650, 550),
    calls: 6,
    results: [alpha, null, beta, { ...alpha, bundleId: '' }, { ...alpha, displayName: '' }],
  },
  {
    name: 'openApp',
    call: ({ addon }) => addon.openApp('com.c'),
    calls: 3,
    results: [true, false],
  },
  {
    name: 'hideApps',
    call: (mac) =>
      ({ result: mac.addon.hideApps(['com.a', 'com.b']), asked: requestsOf(mac, 'hide') }),
    calls: 4,
    results: [
      { result: undefined, asked: ['process 11'] },
      { result: undefined, asked: [] },
    ],
  },
  {
    name: 'unhideApps',
    call: (mac) =>
      ({ result: mac.addon.unhideApps(['com.a', 'com.b']), asked: requestsOf(mac, 'unhide') }),
    calls: 4,
    results: [
      { result: undefined, asked: ['process 12'] },
      { result: undefined, asked: [] },
    ],
  },
  {
    name: 'getWindowList',
    call: ({ addon }) => addon.getWindowList(),
    calls: 14,
    results: [
      [windowA, windowB, windowOff],
      [],
      [windowB, windowOff], [windowA, windowOff], [windowA, windowB],
      [{ ...windowA, displayId: 1 }, windowB, windowOff],
      [windowA, { ...windowB, displayId: 1 }, windowOff],
      [windowA, windowB, { ...windowOff, displayId: 0 }],
    ],
  },
  {
    name: 'readClipboard',
    call: ({ addon }) => addon.readClipboard(),
    calls: 1,
    results: ['before', null],
  },
  {
    name: 'writeClipboard, read again',
    call: ({ addon }) => [addon.writeClipboard('after'), addon.readClipboard()],
    calls: 2,
    results: [[undefined, 'after'], [undefined, null]],
  },
  ...['checkAccessibility', 'requestAccessibility', 'checkScreenRecording',
    'requestScreenRecording'].map((name) => ({
    name,
    call: ({ addon }) => addon[name](),
    calls: 1,
    results: [true, false],
  })),
];

for (const { name, call, calls, results, settingOf = () => setting } of functions) {
  test(`${name} has a documented outcome whichever platform call fails`, async (t) => {
    assert.equal(await failEachCall(t, { settingOf, call, results }), calls);
  });
}
