'use strict';
// appUnderPoint: the application whose ordinary window a click at a point would reach.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const {
  copyWindows, releaseWindows, readEntry, readRect, findRunning, readBundleId, readRecord,
} = require('./app_calls');
const { scene, windowEntry } = require('./harness');

const running = [
  { pid: 11, bundleId: 'com.front', name: 'Front' },
  { pid: 12, bundleId: 'com.back', name: 'Back' },
  { pid: 13, name: 'bare' },
  { pid: 14, bundleId: 'com.apple.dock', name: 'Dock' },
];
const front = { bundleId: 'com.front', displayName: 'Front', pid: 11 };
const back = { bundleId: 'com.back', displayName: 'Back', pid: 12 };

/** An ordinary, opaque window at 0, 0 of 100 x 100 points, with what a test says otherwise. */
const window = (differences) => windowEntry({
  pid: 11, layer: 0, alpha: 1, name: 'Front', bounds: [0, 0, 100, 100], ...differences,
});
const behind = window({ pid: 12, name: 'Back' });

/** A scene with these windows and the applications above. */
const desktop = (t, windows, rest = {}) => scene(t, { running, windows, ...rest });

test('a call without two numbers gives null without throwing, and asks for nothing', (t) => {
  const mac = desktop(t, [window()]);
  for (const odd of [
    [], [10], ['10', '20'], [10, '20'], ['10', 20], [10, null], [undefined, 10], [10, undefined],
    [{}, 10], [10, 1n], [true, true], [[10], 10],
  ]) {
    assert.equal(mac.addon.appUnderPoint(...odd), null);
  }
  assert.deepEqual(mac.calls(), []);
});

test('further arguments are ignored', (t) => {
  const mac = desktop(t, [window()]);
  assert.deepEqual(mac.addon.appUnderPoint(5, 5, 'more', {}), front);
});

test('a point on the left or the top edge of a window is inside it', (t) => {
  const mac = desktop(t, [window({ bounds: [10, 20, 100, 50] })]);
  for (const [x, y] of [[10, 20], [10, 40], [50, 20], [109.999, 20], [10, 69.999]]) {
    assert.deepEqual(mac.addon.appUnderPoint(x, y), front);
  }
});

test('a point exactly on the right or the bottom edge of a window is outside it', (t) => {
  const mac = desktop(t, [window({ bounds: [10, 20, 100, 50] })]);
  for (const [x, y] of [[110, 40], [50, 70], [110, 70], [9.999, 40], [50, 19.999]]) {
    assert.equal(mac.addon.appUnderPoint(x, y), null);
  }
});

test('windows at negative coordinates are hit there', (t) => {
  const mac = desktop(t, [window({ bounds: [-500, -300, 100, 100] })]);
  assert.deepEqual(mac.addon.appUnderPoint(-450, -250), front);
  assert.deepEqual(mac.addon.appUnderPoint(-500, -300), front);
  assert.equal(mac.addon.appUnderPoint(-400, -250), null);
});

test('NaN and infinite points hit nothing', (t) => {
  const mac = desktop(t, [window()]);
  for (const odd of [NaN, Infinity, -Infinity]) {
    assert.equal(mac.addon.appUnderPoint(odd, 5), null);
    assert.equal(mac.addon.appUnderPoint(5, odd), null);
  }
});

test('a window without extent holds no point', (t) => {
  const mac = desktop(t, [window({ bounds: [5, 5, 0, 0] }), behind]);
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
});

test('the frontmost of several windows at the point decides', (t) => {
  const mac = desktop(t, [window({ bounds: [50, 50, 10, 10] }), behind, window()]);
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
  assert.deepEqual(mac.addon.appUnderPoint(55, 55), front);
});

test('a point covered by a window of owner name "Dock" reports the application behind it', (t) => {
  const mac = desktop(t, [window({ pid: 11, name: 'Dock' }), behind]);
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
});

test('a point covered by a window of com.apple.dock reports the application behind it', (t) => {
  const mac = desktop(t, [window({ pid: 14, name: 'Anything' }), behind]);
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
});

for (const bundleId of [
  'com.apple.screencaptureui', 'com.apple.dock', 'com.apple.notificationcenterui',
  'com.apple.controlcenter', 'com.apple.Spotlight', 'com.apple.WindowManager',
  'com.apple.SystemUIServer', 'com.apple.WindowServer',
]) {
  test(`windows of ${bundleId} are looked through, in this letter case alone`, (t) => {
    const other = bundleId.toUpperCase();
    const mac = desktop(t, [window({ pid: 20 }), window({ pid: 21 })], {
      running: [{ pid: 20, bundleId, name: 'A' }, { pid: 21, bundleId: other, name: 'B' }],
    });
    assert.deepEqual(mac.addon.appUnderPoint(5, 5), { bundleId: other, displayName: 'B', pid: 21 });
  });
}

for (const name of ['Window Server', 'Dock']) {
  test(`windows of the owner name "${name}" are looked through, in this letter case alone`, (t) => {
    const mac = desktop(t, [window({ name }), window({ pid: 12, name: name.toLowerCase() })]);
    assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
  });
}

test('a point covered only by the desktop gives null', (t) => {
  const mac = desktop(t, []);
  assert.equal(mac.addon.appUnderPoint(5, 5), null);
  assert.deepEqual(mac.calls(), [copyWindows, releaseWindows]);
});

test('a point covered only by skipped windows gives null', (t) => {
  const mac = desktop(t, [window({ name: 'Window Server' }), window({ pid: 14 }),
    window({ layer: 25 }), window({ pid: 13 })]);
  assert.equal(mac.addon.appUnderPoint(5, 5), null);
});

test('a transparent window in front of an opaque one is passed over', (t) => {
  const mac = desktop(t, [window({ alpha: 0 }), window({ alpha: -1 }), behind]);
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
});

test('a window that can hardly be seen counts, and so does one that says nothing of it', (t) => {
  const mac = desktop(t, [window({ alpha: 0.001 })]);
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), front);
  mac.change({ windows: [window({ alpha: undefined })] });
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), front);
});

test('the caller\'s own windows are never reported', (t) => {
  const mac = desktop(t, [window({ pid: process.pid }), behind], {
    running: [...running, { pid: process.pid, bundleId: 'com.own', name: 'Own' }],
  });
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
});

test('windows of other layers than 0 are passed over', (t) => {
  const mac = desktop(t, [-1, 1, 20, 25, 2147483647].map((layer) => window({ layer }))
    .concat(behind));
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
});

test('a window of a process that is no application is passed over', (t) => {
  const mac = desktop(t, [window({ pid: 99 }), behind]);
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
});

test('a window of an application without a bundle identifier is passed over', (t) => {
  const mac = desktop(t, [window({ pid: 13 }), behind]);
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
});

test('an application that ends right after it was found gives empty texts and no error', (t) => {
  const mac = desktop(t, [window()], {
    running: [{ pid: 11, bundleId: ['com.front', null], name: null }],
  });
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), { bundleId: '', displayName: '', pid: 11 });
});

test('without a window list the answer is null', (t) => {
  const mac = desktop(t, null);
  assert.equal(mac.addon.appUnderPoint(5, 5), null);
  assert.deepEqual(mac.calls(), [copyWindows]);
});

const entry = window();
const missing = (key) => {
  const { [key]: _, ...rest } = entry;
  return rest;
};
for (const key of ['kCGWindowOwnerPID', 'kCGWindowLayer', 'kCGWindowBounds']) {
  test(`an entry without ${key} is passed over silently`, (t) => {
    const mac = desktop(t, [missing(key), behind]);
    assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
  });

  for (const odd of ['0', '', null, [], { X: 0 }, ['0', 0, 9, 9]]) {
    test(`an entry whose ${key} is ${JSON.stringify(odd)} is passed over silently`, (t) => {
      const mac = desktop(t, [{ ...entry, [key]: odd }, behind]);
      assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
    });
  }
}

test('bounds of another class than a dictionary never reach CoreGraphics', (t) => {
  const mac = desktop(t, [7, 'x', [], null].map((odd) => ({ ...entry, kCGWindowBounds: odd })));
  assert.equal(mac.addon.appUnderPoint(5, 5), null);
  assert.deepEqual(mac.callsTo('CGRectMakeWithDictionaryRepresentation'), []);
});

for (const key of ['kCGWindowAlpha', 'kCGWindowOwnerName']) {
  for (const odd of [undefined, null, [], {}, key === 'kCGWindowAlpha' ? '0' : 0]) {
    test(`an entry whose ${key} is ${JSON.stringify(odd) ?? 'missing'} counts as one without it`, (t) => {
      const mac = desktop(t,
        [odd === undefined ? missing(key) : { ...entry, [key]: odd }, behind]);
      assert.deepEqual(mac.addon.appUnderPoint(5, 5), front);
    });
  }
}

test('an entry that is no dictionary is passed over silently', (t) => {
  const mac = desktop(t, ['window', 7, null, [], behind]);
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
});

test('the keys of the record stand in the order bundleId, displayName, pid', (t) => {
  const mac = desktop(t, [window()]);
  assert.deepEqual(Object.keys(mac.addon.appUnderPoint(5, 5)), ['bundleId', 'displayName', 'pid']);
});

test('the calls: each test in its order, the application only of windows that hold the point, and ' +
  'none of windows behind the one that decides', (t) => {
  const elsewhere = [200, 200, 10, 10];
  const mac = desktop(t, [
    window({ pid: process.pid }),
    window({ layer: 1 }),
    window({ alpha: 0 }),
    window({ name: 'Dock' }),
    window({ bounds: undefined }),
    window({ bounds: elsewhere }),
    window({ pid: 99 }),
    window({ pid: 13 }),
    window({ pid: 14 }),
    behind,
    window(),
  ]);
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);

  const upTo = (index, ...what) => what.map((each) => readEntry(index, each));
  const whole = (index, pid) => [
    ...upTo(index, 'pid', 'layer', 'alpha', 'name', 'bounds'), readRect([0, 0, 100, 100]),
    readEntry(index, 'pid'), findRunning(pid),
  ];
  assert.deepEqual(mac.calls(), [
    copyWindows,
    ...upTo(0, 'pid'),
    ...upTo(1, 'pid', 'layer'),
    ...upTo(2, 'pid', 'layer', 'alpha'),
    ...upTo(3, 'pid', 'layer', 'alpha', 'name'),
    ...upTo(4, 'pid', 'layer', 'alpha', 'name', 'bounds'),
    ...upTo(5, 'pid', 'layer', 'alpha', 'name', 'bounds'), readRect(elsewhere),
    ...whole(6, 99),
    ...whole(7, 13), readBundleId(13),
    ...whole(8, 14), readBundleId(14),
    ...whole(9, 12), readBundleId(12), ...readRecord(12),
    releaseWindows,
  ]);
});

test('every call copies the window list anew and releases it', (t) => {
  const mac = desktop(t, [window()]);
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), front);
  mac.change({ windows: [behind] });
  assert.deepEqual(mac.addon.appUnderPoint(5, 5), back);
  assert.equal(mac.callsTo('CFRelease').length, 2);
});
