'use strict';
// listInstalledApps: the application bundles that the metadata index knows.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene, shortTimeouts } = require('./harness');

const signal = 'dispatch_semaphore_signal';

/** An application bundle: what the index has of it, what is at its path, and its record. */
function app(name, { folder = '/Applications', info = {}, ...rest } = {}) {
  const { bundleId } = { bundleId: `com.${name.toLowerCase()}`, ...rest };
  const path = `${folder}/${name}.app`;
  return {
    item: { path, displayName: name },
    bundle: { [path]: { bundleId, info } },
    record: { bundleId, displayName: name, path },
  };
}

/** A scene in which the index knows these applications. */
function index(t, apps, rest = {}) {
  return scene(t, {
    ...rest,
    query: { results: apps.map(({ item }) => item), ...rest.query },
    bundles: Object.assign({}, ...apps.map(({ bundle }) => bundle)),
  });
}

const mail = app('Mail');
const notes = app('Notes');

const workerCalls = [
  ['dispatch_semaphore_create', 0],
  ['dispatch_async', 'main queue'],
  ['dispatch_time', 'DISPATCH_TIME_NOW', 10_000_000_000],
  ['dispatch_semaphore_wait', 'until a time'],
];
const startCalls = [
  ['-[NSMetadataQuery init]'],
  ['+[NSPredicate predicateWithFormat:]',
    'kMDItemContentType == \'com.apple.application-bundle\''],
  ['-[NSMetadataQuery setPredicate:]', 'query',
    'kMDItemContentType = "com.apple.application-bundle"'],
  ['-[NSMetadataQuery setSearchScopes:]', 'query', ['NSMetadataQueryLocalComputerScope']],
  ['+[NSOperationQueue mainQueue]'],
  ['-[NSNotificationCenter addObserverForName:object:queue:usingBlock:]',
    'NSMetadataQueryDidFinishGatheringNotification', 'query', 'main queue'],
  ['-[NSMetadataQuery startQuery]', 'query'],
];
const finishCalls = [
  ['-[NSMetadataQuery stopQuery]', 'query'],
  ['-[NSMetadataQuery results]', 'query'],
  ['-[NSNotificationCenter removeObserver:]', 'observer'],
  [signal],
];

test('it resolves to a record of every application, in the order of the index', async (t) => {
  const mac = index(t, [notes, mail]);
  const promise = mac.addon.listInstalledApps();
  assert.ok(promise instanceof Promise);
  assert.deepEqual(await promise, [notes.record, mail.record]);
});

test('the keys of a record stand in the order bundleId, displayName, path', async (t) => {
  const mac = index(t, [mail]);
  const [record] = await mac.addon.listInstalledApps();
  assert.deepEqual(Object.keys(record), ['bundleId', 'displayName', 'path']);
});

for (const [kind, key] of [['an agent application', 'LSUIElement'],
  ['a background-only application', 'LSBackgroundOnly']]) {
  for (const truth of [true, 1, '1', 'YES', 'true']) {
    test(`${kind} (${key} ${JSON.stringify(truth)}) is not listed`, async (t) => {
      const mac = index(t, [app('Hidden', { info: { [key]: truth } }), mail]);
      assert.deepEqual(await mac.addon.listInstalledApps(), [mail.record]);
    });
  }

  for (const untruth of [false, 0, '0', 'NO', '', [], {}, null]) {
    test(`${key} ${JSON.stringify(untruth)} does not keep an application out`, async (t) => {
      const shown = app('Shown', { info: { [key]: untruth } });
      const mac = index(t, [shown]);
      assert.deepEqual(await mac.addon.listInstalledApps(), [shown.record]);
    });
  }
}

test('two copies of one application at different paths yield two records', async (t) => {
  const copy = app('Mail', { folder: '/Users/me/Applications' });
  const mac = index(t, [mail, copy]);
  assert.deepEqual(await mac.addon.listInstalledApps(), [mail.record, copy.record]);
  assert.equal(mail.record.bundleId, copy.record.bundleId);
  assert.notEqual(mail.record.path, copy.record.path);
});

test('a bundle whose information dictionary lacks both keys is listed', async (t) => {
  const mac = index(t, [app('Mail', { info: { CFBundleName: 'Mail' } })]);
  assert.deepEqual(await mac.addon.listInstalledApps(), [mail.record]);
});

test('a bundle without an information dictionary is listed', async (t) => {
  const mac = index(t, [app('Mail', { info: null })]);
  assert.deepEqual(await mac.addon.listInstalledApps(), [mail.record]);
});

test('with an empty metadata index the result is an empty array', async (t) => {
  const mac = index(t, []);
  assert.deepEqual(await mac.addon.listInstalledApps(), []);
});

test('with a metadata index that does not start the result is an empty array after ten seconds',
  async (t) => {
    const mac = index(t, [mail], { ...shortTimeouts, failing: ['-[NSMetadataQuery startQuery]'] });
    assert.deepEqual(await mac.addon.listInstalledApps(), []);
    assert.deepEqual(mac.callsTo(signal), []);
  });

for (const [what, item] of [
  ['path', { displayName: 'Mail' }], ['display name', { path: mail.item.path }],
  ['path that is a text', { ...mail.item, path: 7 }],
  ['display name that is a text', { ...mail.item, displayName: ['Mail'] }],
]) {
  test(`an item without a ${what} is skipped silently`, async (t) => {
    const mac = index(t, [{ ...mail, item }, notes]);
    assert.deepEqual(await mac.addon.listInstalledApps(), [notes.record]);
  });
}

test('an item whose bundle cannot be opened is skipped silently', async (t) => {
  const mac = index(t, [{ ...mail, bundle: {} }, notes]);
  assert.deepEqual(await mac.addon.listInstalledApps(), [notes.record]);
});

test('a bundle without an identifier is skipped silently', async (t) => {
  const mac = index(t, [app('Mail', { bundleId: null }), notes]);
  assert.deepEqual(await mac.addon.listInstalledApps(), [notes.record]);
});

test('the display name is the index\'s, not the bundle\'s', async (t) => {
  const item = { ...mail.item, displayName: 'Courrier 🖥' };
  const mac = index(t, [{ ...mail, item }]);
  assert.deepEqual(await mac.addon.listInstalledApps(),
    [{ ...mail.record, displayName: 'Courrier 🖥' }]);
  assert.deepEqual(mac.callsTo('-[NSFileManager displayNameAtPath:]'), []);
});

test('hundreds of applications are all listed', async (t) => {
  const apps = Array.from({ length: 300 }, (_, number) => app(`App ${number}`));
  const mac = index(t, apps);
  assert.deepEqual(await mac.addon.listInstalledApps(), apps.map(({ record }) => record));
});

test('arguments are ignored', async (t) => {
  const mac = index(t, [mail]);
  assert.deepEqual(await mac.addon.listInstalledApps(1, 'x', {}), [mail.record]);
});

test('a query that never finishes gives an empty array after ten seconds, and goes on: it is not ' +
  'stopped, and stays observed', async (t) => {
  const mac = index(t, [mail], { ...shortTimeouts, query: { answer: 'never' } });
  assert.deepEqual(await mac.addon.listInstalledApps(), []);
  await mac.until(() => mac.calls('main queue').length >= startCalls.length);
  assert.deepEqual(mac.calls('main queue'), startCalls);
});

test('a query that finishes late is then stopped and no longer observed, and changes nothing',
  async (t) => {
    const mac = index(t, [mail], { ...shortTimeouts, query: { answer: 'held' } });
    const result = await mac.addon.listInstalledApps();
    assert.deepEqual(result, []);
    await mac.until(() => mac.heldAnswers() === 1);
    mac.deliver('query');
    await mac.rest();
    assert.deepEqual(mac.calls('main queue'), [...startCalls, ...finishCalls]);
    assert.deepEqual(mac.calls('worker'), workerCalls);
    assert.deepEqual(result, []);
  });

test('a query that finishes slowly but in time is waited for', async (t) => {
  const mac = index(t, [mail], { query: { answer: 'held' } });
  const promise = mac.addon.listInstalledApps();
  await mac.until(() => mac.heldAnswers() === 1);
  mac.deliver('query');
  assert.deepEqual(await promise, [mail.record]);
});

test('a query that says twice that it finished is answered once', async (t) => {
  const mac = index(t, [mail], { query: { times: 2 } });
  assert.deepEqual(await mac.addon.listInstalledApps(), [mail.record]);
  await mac.rest();
  assert.equal(mac.callsTo('-[NSNotificationCenter removeObserver:]').length, 1);
  assert.equal(mac.callsTo(signal).length, 1);
});

for (const answer of ['inline', 'main queue', 'thread']) {
  test(`a query may say that it finished ${
    { inline: 'before its start returns', 'main queue': 'on the main queue',
      thread: 'on another thread' }[answer]}`, async (t) => {
    const mac = index(t, [mail], { query: { answer } });
    assert.deepEqual(await mac.addon.listInstalledApps(), [mail.record]);
  });
}

test('a main queue that never runs the block gives an empty array after ten seconds', async (t) => {
  const mac = index(t, [mail],
    { ...shortTimeouts, mainQueue: 'stalled', leavesMainQueueBlocks: true });
  assert.deepEqual(await mac.addon.listInstalledApps(), []);
  assert.deepEqual(mac.calls('main queue'), []);
});

test('a main queue that comes to the block late is harmless', async (t) => {
  const mac = index(t, [mail],
    { ...shortTimeouts, mainQueue: 'stalled', query: { answer: 'held' } });
  assert.deepEqual(await mac.addon.listInstalledApps(), []);
  assert.equal(mac.serviceMainQueue(), 1);
  assert.equal(mac.deliver('query'), 1);
  await mac.until(() => mac.waitingMainQueueBlocks() === 1);  // the observer, by now of no use
  assert.equal(mac.serviceMainQueue(), 1);
  assert.equal(mac.callsTo('-[NSNotificationCenter removeObserver:]').length, 1);
});

test('a call after a timeout works', async (t) => {
  const mac = index(t, [mail], { ...shortTimeouts, query: { answer: 'never' } });
  assert.deepEqual(await mac.addon.listInstalledApps(), []);
  mac.change({ timeScale: 1, query: { results: [mail.item] } });
  assert.deepEqual(await mac.addon.listInstalledApps(), [mail.record]);
});

test('several queries in flight each get their own answer and remove their own observer',
  async (t) => {
    const mac = index(t, [mail, notes], { query: { answer: 'held' } });
    const promises = [1, 2, 3].map(() => mac.addon.listInstalledApps());
    await mac.until(() => mac.heldAnswers() === 3);
    mac.deliver('query');
    for (const promise of promises) assert.deepEqual(await promise, [mail.record, notes.record]);
    assert.equal(mac.callsTo('-[NSNotificationCenter removeObserver:]').length, 3);
  });

test('the JavaScript thread does nothing but queue the work', async (t) => {
  const mac = index(t, [mail], { mainQueue: 'stalled', query: { answer: 'held' } });
  const promise = mac.addon.listInstalledApps();
  await mac.until(() => mac.waitingMainQueueBlocks() === 1);
  assert.deepEqual(mac.calls('js'), []);
  assert.equal(mac.serviceMainQueue(), 1);
  mac.deliver('query');
  await mac.until(() => mac.waitingMainQueueBlocks() === 1);
  assert.equal(mac.serviceMainQueue(), 1);
  assert.deepEqual(await promise, [mail.record]);
  assert.deepEqual(mac.calls('js'), []);
});

test('the calls, thread by thread: query and observer on the main queue, bundles on the worker',
  async (t) => {
    const agent = app('Agent', { info: { LSUIElement: true } });
    const daemon = app('Daemon', { info: { LSBackgroundOnly: true } });
    const nameless = app('Nameless', { bundleId: null });
    const mac = index(t, [{ item: { path: '/x' } }, { item: { path: '/y', displayName: 'Y' } },
      nameless, daemon, agent, mail]);
    assert.deepEqual(await mac.addon.listInstalledApps(), [mail.record]);
    assert.deepEqual(mac.calls('main queue'), [...startCalls, ...finishCalls]);

    const readItem = (number) => ['kMDItemPath', 'kMDItemDisplayName']
      .map((attribute) => ['-[NSMetadataItem valueForAttribute:]', `item ${number}`, attribute]);
    const openBundle = (path) => ['+[NSBundle bundleWithPath:]', path];
    const bundleCall = (message) => (path) => [`-[NSBundle ${message}]`, `bundle ${path}`];
    const readBundleId = bundleCall('bundleIdentifier');
    const readInfo = bundleCall('infoDictionary');
    const readBundle = ({ item: { path } }, infos) =>
      [openBundle(path), readBundleId(path), ...Array(infos).fill(readInfo(path))];
    assert.deepEqual(mac.calls('worker'), [
      ...workerCalls,
      ...readItem(0),
      ...readItem(1), openBundle('/y'),
      ...readItem(2), ...readBundle(nameless, 0),
      ...readItem(3), ...readBundle(daemon, 1),
      ...readItem(4), ...readBundle(agent, 2),
      ...readItem(5), ...readBundle(mail, 2),
    ]);
  });
