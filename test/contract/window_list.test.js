'use strict';
// getWindowList: the ordinary windows on the screen, front to back.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const {
  copyWindows, releaseWindows, readEntry, readRect, findRunning, readBundleId,
} = require('./app_calls');
const { scene, builtIn, windowEntry } = require('./harness');

const running = [
  { pid: 11, bundleId: 'com.editor', name: 'Editor' },
  { pid: 12, bundleId: 'com.mail', name: 'Mail' },
  { pid: 13, name: 'bare' },
];

/** An ordinary window of the editor's, with what a test says otherwise. */
const window = (differences) =>
  windowEntry({ pid: 11, layer: 0, alpha: 1, bounds: [10, 20, 300, 200], ...differences });
const record = {
  bundleId: 'com.editor', pid: 11, x: 10, y: 20, w: 300, h: 200, displayId: 1,
};

/** A scene with these windows and the applications above. */
const desktop = (t, windows, rest = {}) => scene(t, { running, windows, ...rest });

test('a fully transparent window is not listed', (t) => {
  const mac = desktop(t, [window({ alpha: 0 }), window({ alpha: -0.5 })]);
  assert.deepEqual(mac.addon.getWindowList(), []);
});

test('a window whose info lacks the alpha entry is listed', (t) => {
  const mac = desktop(t, [window({ alpha: undefined })]);
  assert.deepEqual(mac.addon.getWindowList(), [record]);
});

test('a window that can hardly be seen is listed', (t) => {
  const mac = desktop(t, [window({ alpha: 0.001 })]);
  assert.deepEqual(mac.addon.getWindowList(), [record]);
});

test('an alpha that is more than nothing only as a double is nothing', (t) => {
  const mac = desktop(t, [window({ alpha: 1e-60 })]);
  assert.deepEqual(mac.addon.getWindowList(), []);
});

test('a window at layer 0 owned by a process without a bundle identifier is not listed', (t) => {
  const mac = desktop(t, [window({ pid: 13 })]);
  assert.deepEqual(mac.addon.getWindowList(), []);
});

test('a window of a process that is no application is not listed', (t) => {
  const mac = desktop(t, [window({ pid: 99 }), window()]);
  assert.deepEqual(mac.addon.getWindowList(), [record]);
});

test('two windows of the same application yield two records with the same bundleId and pid', (t) => {
  const mac = desktop(t, [window(), window({ bounds: [0, 0, 5, 5] })]);
  assert.deepEqual(mac.addon.getWindowList(), [record, { ...record, x: 0, y: 0, w: 5, h: 5 }]);
});

const second = { id: 2, frame: [1600, 0, 1000, 800], scale: 1, name: 'Second' };
const twoDisplays = { screens: [builtIn, second] };

test('a window whose centre lies in the gap between two displays reports the main display', (t) => {
  const mac = desktop(t, [window({ bounds: [1500, 100, 112, 100] })],
    { ...twoDisplays, mainDisplayId: 7 });
  assert.equal(mac.addon.getWindowList()[0].displayId, 7);
  assert.deepEqual(mac.callsTo('CGGetDisplaysWithPoint'),
    [['CGGetDisplaysWithPoint', [1556, 150], 1]]);
});

test('a window whose centre is off all displays reports the main display', (t) => {
  const mac = desktop(t, [window({ bounds: [-5000, 20, 300, 200] })],
    { ...twoDisplays, mainDisplayId: 2 });
  assert.equal(mac.addon.getWindowList()[0].displayId, 2);
});

test('a window whose centre is on a secondary display reports that one, even if most of its area ' +
  'lies on another', (t) => {
  // Tall and narrow on the second display's edge: its centre is beyond the first one's lower edge.
  const below = { id: 3, frame: [0, -100, 1512, 100], scale: 1, name: 'Below' };
  const mac = desktop(t, [window({ bounds: [100, 0, 10, 1965] })], { screens: [builtIn, below] });
  assert.equal(mac.addon.getWindowList()[0].displayId, 3);
});

test('a window that straddles two displays belongs to the one that holds its centre', (t) => {
  const mac = desktop(t, [window({ bounds: [1400, 300, 600, 100] })], twoDisplays);
  assert.equal(mac.addon.getWindowList()[0].displayId, 2);
  mac.change({ windows: [window({ bounds: [1400, 300, 200, 100] })] });
  assert.equal(mac.addon.getWindowList()[0].displayId, 1);
});

test('the main display is asked for only when no display holds the centre', (t) => {
  const mac = desktop(t, [window()]);
  mac.addon.getWindowList();
  assert.deepEqual(mac.callsTo('CGMainDisplayID'), []);
});

test('windows of the calling process are never listed', (t) => {
  const mac = desktop(t, [window({ pid: process.pid }), window()], {
    running: [...running, { pid: process.pid, bundleId: 'com.own', name: 'Own' }],
  });
  assert.deepEqual(mac.addon.getWindowList(), [record]);
});

test('windows of other layers than 0 are not listed', (t) => {
  const mac = desktop(t, [-2147483601, -1, 1, 25, 101].map((layer) => window({ layer })));
  assert.deepEqual(mac.addon.getWindowList(), []);
});

test('system interface at layer 0 is listed: only the hit test looks through it', (t) => {
  const mac = desktop(t, [window({ pid: 14, name: 'Dock' })],
    { running: [{ pid: 14, bundleId: 'com.apple.dock', name: 'Dock' }] });
  assert.deepEqual(mac.addon.getWindowList(), [{ ...record, bundleId: 'com.apple.dock', pid: 14 }]);
});

test('an accessory application\'s windows are listed', (t) => {
  const mac = desktop(t, [window()], { running: [{ ...running[0], policy: 1 }] });
  assert.deepEqual(mac.addon.getWindowList(), [record]);
});

test('without a window list the answer is an empty array', (t) => {
  const mac = desktop(t, null);
  assert.deepEqual(mac.addon.getWindowList(), []);
  assert.deepEqual(mac.calls(), [copyWindows]);
});

test('with no windows the answer is an empty array', (t) => {
  const mac = desktop(t, []);
  assert.deepEqual(mac.addon.getWindowList(), []);
  assert.deepEqual(mac.calls(), [copyWindows, releaseWindows]);
});

test('bounds come through unrounded, negative and beyond the display', (t) => {
  const mac = desktop(t, [window({ bounds: [-0.25, -1e6, 1e-3, 12345.678] })]);
  const [{ x, y, w, h }] = mac.addon.getWindowList();
  assert.deepEqual([x, y, w, h], [-0.25, -1e6, 1e-3, 12345.678]);
});

test('the order is the system\'s, front to back, and the array is dense', (t) => {
  const mac = desktop(t, [window({ pid: 12 }), window({ layer: 3 }), window(), window({ pid: 13 }),
    window({ pid: 12 })]);
  const list = mac.addon.getWindowList();
  assert.deepEqual(list.map(({ pid }) => pid), [12, 11, 12]);
  assert.deepEqual(Object.keys(list), ['0', '1', '2']);
});

test('more windows than one batch of an enumeration are all listed', (t) => {
  const lefts = Array.from({ length: 50 }, (_, index) => index);
  const mac = desktop(t, lefts.map((x) => window({ bounds: [x, 0, 10, 10] })));
  assert.deepEqual(mac.addon.getWindowList().map(({ x }) => x), lefts);
});

test('the keys of a record stand in the order bundleId, pid, x, y, w, h, displayId', (t) => {
  const mac = desktop(t, [window()]);
  assert.deepEqual(Object.keys(mac.addon.getWindowList()[0]),
    ['bundleId', 'pid', 'x', 'y', 'w', 'h', 'displayId']);
});

test('display identifiers above 2^31 stay positive', (t) => {
  const mac = desktop(t, [window()], { screens: [{ ...builtIn, id: 4294967295 }] });
  assert.equal(mac.addon.getWindowList()[0].displayId, 4294967295);
});

test('arguments are ignored', (t) => {
  const mac = desktop(t, [window()]);
  assert.deepEqual(mac.addon.getWindowList(1, 'x', {}, Symbol('y')), [record]);
});

const entry = window();
for (const key of ['kCGWindowOwnerPID', 'kCGWindowLayer', 'kCGWindowBounds']) {
  test(`an entry without ${key} is skipped silently`, (t) => {
    const { [key]: _, ...without } = entry;
    const mac = desktop(t, [without, window()]);
    assert.deepEqual(mac.addon.getWindowList(), [record]);
  });

  for (const odd of ['0', null, [], { Width: 5 }]) {
    test(`an entry whose ${key} is ${JSON.stringify(odd)} is skipped silently`, (t) => {
      const mac = desktop(t, [{ ...entry, [key]: odd }, window()]);
      assert.deepEqual(mac.addon.getWindowList(), [record]);
    });
  }
}

test('a window whose bounds are a number is skipped silently', (t) => {
  const mac = desktop(t, [{ ...entry, kCGWindowBounds: 7 }]);
  assert.deepEqual(mac.addon.getWindowList(), []);
});

for (const odd of ['0', null, [], {}]) {
  test(`a window whose alpha is ${JSON.stringify(odd)} is listed as one without`, (t) => {
    const mac = desktop(t, [{ ...entry, kCGWindowAlpha: odd }]);
    assert.deepEqual(mac.addon.getWindowList(), [record]);
  });
}

test('an entry that is no dictionary is skipped silently', (t) => {
  const mac = desktop(t, [7, 'window', null, [[]], window()]);
  assert.deepEqual(mac.addon.getWindowList(), [record]);
});

test('the calls: each test in its order, and the application only of windows that pass those before',
  (t) => {
    const mac = desktop(t, [
      window({ pid: process.pid }),
      window({ layer: 1 }),
      window({ alpha: 0 }),
      window({ bounds: undefined }),
      window({ pid: 99 }),
      window({ pid: 13 }),
      window(),
      window({ pid: 12, bounds: [-100, 0, 10, 10] }),
    ]);
    assert.deepEqual(mac.addon.getWindowList().map(({ pid }) => pid), [11, 12]);

    const upTo = (index, ...what) => what.map((each) => readEntry(index, each));
    const whole = (index, pid, bounds = [10, 20, 300, 200]) => [
      ...upTo(index, 'pid', 'layer', 'alpha', 'bounds'), readRect(bounds),
      readEntry(index, 'pid'), findRunning(pid),
    ];
    assert.deepEqual(mac.calls(), [
      copyWindows,
      ...upTo(0, 'pid'),
      ...upTo(1, 'pid', 'layer'),
      ...upTo(2, 'pid', 'layer', 'alpha'),
      ...upTo(3, 'pid', 'layer', 'alpha', 'bounds'),
      ...whole(4, 99),
      ...whole(5, 13), readBundleId(13),
      ...whole(6, 11), readBundleId(11), readEntry(6, 'pid'),
      ['CGGetDisplaysWithPoint', [160, 120], 1],
      ...whole(7, 12, [-100, 0, 10, 10]), readBundleId(12), readEntry(7, 'pid'),
      ['CGGetDisplaysWithPoint', [-95, 5], 1], ['CGMainDisplayID'],
      releaseWindows,
    ]);
  });

test('hundreds of windows are all listed, in their order', (t) => {
  const windows = Array.from({ length: 250 }, (_, x) => window({ bounds: [x, -x, 300, 200] }));
  const list = desktop(t, windows).addon.getWindowList();
  assert.deepEqual(list, windows.map((_, x) => ({ ...record, x, y: 0 - x, displayId: list[x].displayId })));
  assert.deepEqual(Object.keys(list[249]), Object.keys(record));
});

test('fifty windows cost one copy of the list, and a look-up of application and bundle for each ' +
  'that is listed', (t) => {
  const windows = Array.from({ length: 50 }, (_, index) => window({ layer: index % 2 }));
  const mac = desktop(t, windows);
  assert.equal(mac.addon.getWindowList().length, 25);
  const counts = [
    'CGWindowListCopyWindowInfo', 'CFRelease',
    '+[NSRunningApplication runningApplicationWithProcessIdentifier:]',
    '-[NSRunningApplication bundleIdentifier]',
  ].map((name) => mac.callsTo(name).length);
  assert.deepEqual(counts, [1, 1, 25, 25]);
});

test('no name of an application and no list of all of them is asked for', (t) => {
  const mac = desktop(t, [window(), window({ pid: 12 })]);
  mac.addon.getWindowList();
  assert.deepEqual(mac.callsTo('-[NSRunningApplication localizedName]'), []);
  assert.deepEqual(mac.callsTo('-[NSWorkspace runningApplications]'), []);
});
