'use strict';
// The harness finds what it is there to find: each deliberate fault fails its test.
const assert = require('node:assert/strict');
const path = require('node:path');
const { test } = require('node:test');

const { scene, shortTimeouts } = require('./harness');
const { buildFolder } = require('./build_folder');

const faulty = require(path.join(buildFolder, 'faulty.node'));

/** Runs `body` as a test of its own and returns what its end complains of. */
async function complaintsOf(body, script = {}) {
  let atEnd;
  const mac = scene({ after: (hook) => { atEnd = hook; } }, script);
  await body(mac);
  try {
    await atEnd();
    return [];
  } catch (error) {
    assert.ok(Array.isArray(error.actual), error);
    return error.actual;
  }
}

test('a test without faults has nothing to complain of', async () => {
  assert.deepEqual(await complaintsOf((mac) => mac.addon.captureDisplay(['com.a'])), []);
});

const faults = [
  ['a leaked object', 'leakObject', ['alive: 1 configuration']],
  ['an over-release', 'overRelease', ['over-release of configuration']],
  ['a release of NULL', 'releaseNull', ['CFRelease(NULL)']],
  ['a leaked event', 'leakEvent', ['alive: 1 event']],
  ['posting no event', 'postNoEvent', ['CGEventPost of no event']],
  ['posting a dead event', 'postDeadEvent', ['CGEventPost of dead event']],
  ['a message to a dead object', 'messageTheDead', ['-setWidth: sent to dead configuration']],
  ['a message to a dead object that returns a structure', 'askTheDeadForFrame',
    ['-frame sent to dead screen 0']],
  ['a retain of a dead object', 'retainTheDead', ['-retain sent to dead configuration']],
  ['a message without a pool', 'messageWithoutPool',
    ['+[NSGraphicsContext setCurrentContext:] without an autorelease pool']],
  ['an open autorelease pool', 'leavePoolOpen', ['autorelease pools open: 1']],
  ['a leaked block', 'leakBlock', ['blocks alive: 1']],
  ['a block that holds itself', 'leakCycle', ['alive: 1 configuration', 'blocks alive: 1']],
  ['a state restored but never saved', 'restoreWithoutSaving',
    ['graphics state restored that was not saved']],
  ['a leaked window list', 'leakWindowList', ['alive: 1 window list']],
  ['a rectangle made of a text', 'makeRectOfText',
    ['CGRectMakeWithDictionaryRepresentation without dictionary or rectangle']],
  ['an observer that is never removed', 'keepObserving',
    ['an observer that ran is still registered']],
  ['an observer removed twice', 'removeObserverTwice', ['an observer was removed twice']],
  ['a semaphore released in use', 'releaseSemaphoreInUse',
    ['a semaphore was released while a thread held it']],
];
for (const [what, fault, complaints] of faults) {
  test(`${what} is found`, async () => {
    assert.deepEqual(await complaintsOf(() => faulty[fault]()), complaints);
  });
}

test('a query that nobody holds while it gathers is found', async () => {
  const complaints = await complaintsOf((mac) => {
    faulty.forgetQuery();
    mac.deliver('query');
  }, { query: { answer: 'held' } });
  assert.deepEqual(complaints, ['a query was released as it gathered']);
});

test('a graphics context left current is found', async () => {
  const complaints = await complaintsOf(() => faulty.leaveContextCurrent());
  assert.deepEqual(complaints, ['alive: 1 graphics context']);
});

test('a missing autorelease pool is found', async () => {
  const complaints = await complaintsOf(() => faulty.forgetPool());
  assert.equal(complaints.length, 1);
  assert.match(complaints[0], /^Foundation says: .*autorelease called without pool/);
});

test('a main-queue block that is never run is found', async () => {
  const complaints = await complaintsOf(
    (mac) => assert.rejects(mac.addon.captureDisplay([])),
    { ...shortTimeouts, mainQueue: 'stalled' });
  assert.deepEqual(complaints, ['1 main-queue blocks were not run']);
});

test('an answer that is held and never delivered is found', async () => {
  const complaints = await complaintsOf(
    (mac) => assert.rejects(mac.addon.captureDisplay([])),
    { ...shortTimeouts, image: { answer: 'held' } });
  assert.deepEqual(complaints, ['1 held answers were not delivered']);
});

test('an answer time that a scene misspells is found', async () => {
  const complaints = await complaintsOf(
    (mac) => assert.rejects(mac.addon.captureDisplay([])),
    { ...shortTimeouts, content: { answer: 'tomorrow' } });
  assert.deepEqual(complaints, ['the scene says "tomorrow" of when to answer for content']);
});

test('a fault does not spill into the next test', async () => {
  assert.notDeepEqual(await complaintsOf(() => faulty.leakObject()), []);
  assert.deepEqual(await complaintsOf((mac) => mac.addon.listDisplays()), []);
});

test('a plan that fails a call fails exactly that one', async (t) => {
  const mac = scene(t, { screens: [1, 2].map((id) => ({ id, frame: [0, 0, 9, 9], name: 'x' })) });
  mac.failCall(3);
  assert.deepEqual(mac.addon.listDisplays().map(({ name }) => name), ['Display', 'x']);
  assert.equal(mac.failableCalls()[2], '-[NSScreen localizedName]');
});

test('dispatch_once runs its block once', (t) => {
  const mac = scene(t);
  faulty.runOnce();
  faulty.runOnce();
  assert.deepEqual(mac.calls(), [['+[NSScreen mainScreen]']]);
});

test('dispatch_after runs its block later, on the main queue, in scaled time', async (t) => {
  const mac = scene(t, { timeScale: 0.001 });
  faulty.runLater();
  assert.deepEqual(mac.calls('js'), [
    ['dispatch_time', 'DISPATCH_TIME_NOW', 5_000_000_000],
    ['dispatch_after', 'main queue'],
  ]);
  await mac.until(() => mac.calls('main queue').length === 1);
  assert.deepEqual(mac.calls('main queue'), [['+[NSScreen mainScreen]']]);
});

test('blocks are objects: an array retains them, and they retain what they capture', (t) => {
  scene(t);
  faulty.keepBlocksInArray();
});
