'use strict';
// listRunningApps and getFrontmostApp: application records.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const {
  listRunning, findFrontmost, readPolicy, readBundleId, readRecord,
} = require('./app_calls');
const { scene } = require('./harness');

const regular = 0;
const accessory = 1;
const prohibited = 2;

const editor = { pid: 101, bundleId: 'com.editor', name: 'Editor' };
const mail = { pid: 102, bundleId: 'com.mail', name: 'Mail' };
const editorRecord = { bundleId: 'com.editor', displayName: 'Editor', pid: 101 };
const mailRecord = { bundleId: 'com.mail', displayName: 'Mail', pid: 102 };

test('with no regular application that has a bundle identifier, listRunningApps() gives an empty ' +
  'array', (t) => {
  const mac = scene(t, {
    running: [
      { ...editor, bundleId: null },
      { ...mail, policy: accessory },
      { ...mail, pid: 103, policy: prohibited },
    ],
  });
  assert.deepEqual(mac.addon.listRunningApps(), []);
});

test('with nothing running at all, listRunningApps() gives an empty array', (t) => {
  const mac = scene(t);
  assert.deepEqual(mac.addon.listRunningApps(), []);
});

test('a regular application whose bundle identifier is nil is absent from listRunningApps()',
  (t) => {
    const mac = scene(t, { running: [{ pid: 100, name: 'bare', policy: regular }, editor] });
    assert.deepEqual(mac.addon.listRunningApps(), [editorRecord]);
  });

test('a frontmost application whose bundle identifier is nil makes getFrontmostApp() null', (t) => {
  const mac = scene(t, { running: [{ pid: 100, name: 'bare' }, editor], frontmost: 100 });
  assert.equal(mac.addon.getFrontmostApp(), null);
});

test('an application whose localized name is nil is listed with displayName ""', (t) => {
  const mac = scene(t, { running: [{ ...editor, name: null }], frontmost: 101 });
  const expected = { ...editorRecord, displayName: '' };
  assert.deepEqual(mac.addon.listRunningApps(), [expected]);
  assert.deepEqual(mac.addon.getFrontmostApp(), expected);
});

test('a frontmost accessory application is reported although listRunningApps() leaves it out',
  (t) => {
    const mac = scene(t, { running: [editor, { ...mail, policy: accessory }], frontmost: 102 });
    assert.deepEqual(mac.addon.getFrontmostApp(), mailRecord);
    assert.deepEqual(mac.addon.listRunningApps(), [editorRecord]);
  });

test('"pid" is a JavaScript number, not a string', (t) => {
  const mac = scene(t, { running: [editor], frontmost: 101 });
  assert.equal(typeof mac.addon.listRunningApps()[0].pid, 'number');
  assert.equal(typeof mac.addon.getFrontmostApp().pid, 'number');
});

test('a pid at the ends of 32 bits comes through', (t) => {
  const mac = scene(t, {
    running: [-1, 2147483647, -2147483648].map((pid) => ({ ...editor, pid })),
  });
  assert.deepEqual(mac.addon.listRunningApps().map(({ pid }) => pid),
    [-1, 2147483647, -2147483648]);
});

test('getFrontmostApp() is null when no application is in front', (t) => {
  const mac = scene(t, { running: [editor], frontmost: null });
  assert.equal(mac.addon.getFrontmostApp(), null);
  assert.deepEqual(mac.calls(), findFrontmost);
});

test('the keys of a record stand in the order bundleId, displayName, pid', (t) => {
  const mac = scene(t, { running: [editor], frontmost: 101 });
  const keys = ['bundleId', 'displayName', 'pid'];
  assert.deepEqual(Object.keys(mac.addon.listRunningApps()[0]), keys);
  assert.deepEqual(Object.keys(mac.addon.getFrontmostApp()), keys);
});

test('the list is dense and in the system\'s order, whatever lies between', (t) => {
  const mac = scene(t, {
    running: [{ ...mail, policy: prohibited }, mail, { pid: 5 }, editor, { ...editor, pid: 104 }],
  });
  const apps = mac.addon.listRunningApps();
  assert.deepEqual(apps, [mailRecord, editorRecord, { ...editorRecord, pid: 104 }]);
  assert.deepEqual(Object.keys(apps), ['0', '1', '2']);
});

test('more applications than one batch of an enumeration are all listed', (t) => {
  const pids = Array.from({ length: 40 }, (_, index) => 200 + index);
  const mac = scene(t, { running: pids.map((pid) => ({ ...editor, pid })) });
  assert.deepEqual(mac.addon.listRunningApps().map(({ pid }) => pid), pids);
});

test('the process of the addon itself is not left out', (t) => {
  const mac = scene(t, { running: [{ ...editor, pid: process.pid }], frontmost: process.pid });
  assert.equal(mac.addon.listRunningApps()[0].pid, process.pid);
  assert.equal(mac.addon.getFrontmostApp().pid, process.pid);
});

test('names and identifiers beyond ASCII arrive whole, and empty ones stay empty', (t) => {
  const mac = scene(t, {
    running: [
      { pid: 1, bundleId: 'com.écran.测试', name: 'Écran 测试 🖥' }, { pid: 2, bundleId: '', name: '' },
    ],
  });
  assert.deepEqual(mac.addon.listRunningApps(), [
    { bundleId: 'com.écran.测试', displayName: 'Écran 测试 🖥', pid: 1 },
    { bundleId: '', displayName: '', pid: 2 },
  ]);
});

test('an application that ends between two readings gives empty texts and no error', (t) => {
  const vanishing = { ...editor, bundleId: ['com.editor', null], name: null };
  const mac = scene(t, { running: [vanishing, mail], frontmost: 101 });
  const expected = { bundleId: '', displayName: '', pid: 101 };
  assert.deepEqual(mac.addon.listRunningApps(), [expected, mailRecord]);
});

test('both functions ignore whatever arguments they get', (t) => {
  const mac = scene(t, { running: [editor], frontmost: 101 });
  assert.deepEqual(mac.addon.listRunningApps(1, {}, null), [editorRecord]);
  assert.deepEqual(mac.addon.getFrontmostApp('x', Symbol('y')), editorRecord);
});

test('every call asks the system anew', (t) => {
  const mac = scene(t, { running: [editor], frontmost: 101 });
  mac.addon.listRunningApps();
  mac.addon.getFrontmostApp();
  mac.change({ running: [mail], frontmost: 102 });
  assert.deepEqual(mac.addon.listRunningApps(), [mailRecord]);
  assert.deepEqual(mac.addon.getFrontmostApp(), mailRecord);
});

test('the calls of listRunningApps(): the policy first, the identifier only of regular ones', (t) => {
  const mac = scene(t, {
    running: [editor, { ...mail, policy: accessory }, { pid: 103, name: 'bare' }],
  });
  mac.addon.listRunningApps();
  assert.deepEqual(mac.calls(), [
    ...listRunning,
    readPolicy(101), readBundleId(101), ...readRecord(101),
    readPolicy(102),
    readPolicy(103), readBundleId(103),
  ]);
});

test('the calls of getFrontmostApp(): no policy is asked for', (t) => {
  const mac = scene(t, { running: [editor], frontmost: 101 });
  mac.addon.getFrontmostApp();
  assert.deepEqual(mac.calls(), [...findFrontmost, readBundleId(101), ...readRecord(101)]);
});
