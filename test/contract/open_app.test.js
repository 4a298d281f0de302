'use strict';
// openApp: launching an application, or bringing it forward, by its bundle identifier.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { locate, sharedWorkspace } = require('./app_calls');
const { scene, shortTimeouts } = require('./harness');

const open = '-[NSWorkspace openApplicationAtURL:configuration:completionHandler:]';
const activate = '-[NSRunningApplication activateWithOptions:]';
const signal = 'dispatch_semaphore_signal';

const located = { locations: { 'com.mail': '/Applications/Mail.app' } };

/** A scene that knows where com.mail is, and what comes of opening it. */
const workspace = (t, opening = {}, rest = {}) => scene(t, { ...located, open: opening, ...rest });

const workerCalls = [
  ['dispatch_semaphore_create', 0],
  ['dispatch_async', 'main queue'],
  ['dispatch_time', 'DISPATCH_TIME_NOW', 10_000_000_000],
  ['dispatch_semaphore_wait', 'until a time'],
];
const openCalls = [
  ...locate('com.mail'),
  ['+[NSWorkspaceOpenConfiguration configuration]'],
  ['-[NSWorkspaceOpenConfiguration setActivates:]', 'open configuration', true],
  sharedWorkspace,
  [open, 'location /Applications/Mail.app', 'open configuration'],
];

test('openApp(42) returns a promise that resolves to false; it does not reject and does not throw',
  async (t) => {
    const mac = workspace(t);
    const promise = mac.addon.openApp(42);
    assert.ok(promise instanceof Promise);
    assert.equal(await promise, false);
    assert.deepEqual(mac.calls(), []);
  });

for (const [shown, ...args] of [
  ['nothing'], ['undefined', undefined], ['null', null], ['an array', ['com.mail']],
  ['a String object', new String('com.mail')], ['true', true], ['a symbol', Symbol('x')],
]) {
  test(`openApp of ${shown} resolves to false and asks for nothing`, async (t) => {
    const mac = workspace(t);
    assert.equal(await mac.addon.openApp(...args), false);
    assert.deepEqual(mac.calls(), []);
  });
}

test('openApp of an application that can be opened resolves to true and brings it to the front',
  async (t) => {
    const mac = workspace(t, { application: { pid: 321 } });
    assert.equal(await mac.addon.openApp('com.mail'), true);
    assert.deepEqual(mac.callsTo(activate), [[activate, 'process 321', 2]]);
  });

test('openApp of an application that is already running resolves to true and brings it to the front',
  async (t) => {
    const mail = { pid: 12, bundleId: 'com.mail', name: 'Mail', isHidden: true };
    const mac = workspace(t, { application: mail }, { running: [mail] });
    assert.equal(await mac.addon.openApp('com.mail'), true);
    assert.deepEqual(mac.callsTo(activate), [[activate, 'process 12', 2]]);
    assert.deepEqual(mac.callsTo('-[NSRunningApplication unhide]'), []);
  });

test('a refused activation is not reported', async (t) => {
  const mac = workspace(t, {}, { failing: [activate] });
  assert.equal(await mac.addon.openApp('com.mail'), true);
});

test('an identifier that the system does not know resolves to false and opens nothing', async (t) => {
  const mac = workspace(t);
  assert.equal(await mac.addon.openApp('com.unknown'), false);
  assert.deepEqual(mac.calls('main queue'), [...locate('com.unknown'), [signal]]);
});

test('the identifier is handed over exactly as given', async (t) => {
  const mac = workspace(t);
  for (const identifier of ['COM.MAIL', ' com.mail', '', 'com.écran.测试🖥', 'com.mail\0x']) {
    assert.equal(await mac.addon.openApp(identifier), false);
    assert.deepEqual(mac.calls('main queue').slice(-3), [...locate(identifier), [signal]]);
  }
});

for (const result of ['error', 'both', 'neither']) {
  test(`an opening that answers with ${result === 'error' ? 'an error' : result} resolves to false`,
    async (t) => {
      const mac = workspace(t, { result });
      assert.equal(await mac.addon.openApp('com.mail'), false);
      assert.deepEqual(mac.callsTo(activate), []);
      assert.equal(mac.callsTo(signal).length, 1);
    });
}

test('an opening that never answers resolves to false after ten seconds', async (t) => {
  const mac = workspace(t, { answer: 'never' }, shortTimeouts);
  assert.equal(await mac.addon.openApp('com.mail'), false);
  assert.deepEqual(mac.callsTo(signal), []);
});

test('a main queue that never runs the block resolves to false after ten seconds', async (t) => {
  const mac = workspace(t, {},
    { ...shortTimeouts, mainQueue: 'stalled', leavesMainQueueBlocks: true });
  assert.equal(await mac.addon.openApp('com.mail'), false);
  assert.equal(mac.waitingMainQueueBlocks(), 1);
  assert.deepEqual(mac.calls('main queue'), []);
});

for (const result of ['application', 'error', 'both', 'neither']) {
  test(`an answer that comes late with ${result} is harmless and changes nothing`, async (t) => {
    const mac = workspace(t, { answer: 'held', result }, shortTimeouts);
    assert.equal(await mac.addon.openApp('com.mail'), false);
    await mac.until(() => mac.heldAnswers() === 1);
    mac.deliver('open');
    await mac.rest();
    assert.equal(mac.callsTo(activate).length, result === 'application' ? 1 : 0);
  });
}

test('a main queue that comes to the block late is harmless', async (t) => {
  const mac = workspace(t, {}, { ...shortTimeouts, mainQueue: 'stalled' });
  assert.equal(await mac.addon.openApp('com.mail'), false);
  assert.equal(mac.serviceMainQueue(), 1);
  await mac.until(() => mac.callsTo(signal).length === 1);
});

test('a call after a timeout works', async (t) => {
  const mac = workspace(t, { answer: 'never' }, shortTimeouts);
  assert.equal(await mac.addon.openApp('com.mail'), false);
  mac.change({ timeScale: 1, open: {} });
  assert.equal(await mac.addon.openApp('com.mail'), true);
});

for (const answer of ['inline', 'main queue', 'thread']) {
  test(`the answer may come ${
    { inline: 'before the request returns', 'main queue': 'on the main queue',
      thread: 'on another thread' }[answer]}`, async (t) => {
    const mac = workspace(t, { answer });
    assert.equal(await mac.addon.openApp('com.mail'), true);
  });
}

test('a handler that is called twice settles once', async (t) => {
  const mac = workspace(t, { times: 2 });
  assert.equal(await mac.addon.openApp('com.mail'), true);
  await mac.rest();
  assert.equal(mac.callsTo(signal).length, 1);
});

test('several openings in flight each get their own answer', async (t) => {
  const mac = workspace(t);
  const identifiers = ['com.mail', 'com.unknown', 'com.mail', 'com.other', 'com.mail', 'x'];
  const results = await Promise.all(identifiers.map((each) => mac.addon.openApp(each)));
  assert.deepEqual(results, identifiers.map((each) => each === 'com.mail'));
});

test('openApp ignores further arguments', async (t) => {
  const mac = workspace(t);
  assert.equal(await mac.addon.openApp('com.mail', false, {}), true);
});

test('openApp does not block the JavaScript thread', async (t) => {
  const mac = workspace(t, { answer: 'held' });
  let isSettled = false;
  const promise = mac.addon.openApp('com.mail').then((value) => { isSettled = true; return value; });
  await mac.until(() => mac.heldAnswers() === 1);
  for (let turn = 0; turn < 100; ++turn) await new Promise(setImmediate);
  assert.equal(isSettled, false);
  mac.deliver('open');
  assert.equal(await promise, true);
});

test('the calls of openApp, thread by thread', async (t) => {
  const mac = workspace(t, { application: { pid: 77 } });
  await mac.addon.openApp('com.mail');
  const byRole = [...mac.callsByThread()].map(([key, calls]) => [key.replace(/ \d+$/, ''), calls]);
  assert.deepEqual(byRole, [
    ['worker', workerCalls],
    ['main queue', openCalls],
    ['completion', [[activate, 'process 77', 2], [signal]]],
  ]);
});
