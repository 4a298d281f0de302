'use strict';
// The addon over recording doubles of the macOS frameworks: a test sets a scene, calls the addon,
// and reads the record. When the test ends, the scene fails it for whatever is left over.

const assert = require('node:assert/strict');
const path = require('node:path');

const { buildFolder } = require('./build_folder');

const addonPath = path.join(buildFolder, 'deskhand.node');

const doubles = require(path.join(buildFolder, 'doubles.node'));
const addon = require(addonPath);

const deadlineMs = 5000;

// Once the frameworks are at rest nothing is under way that would let go of anything.
const leftoverDeadlineMs = 2000;

/** A screen as AppKit has it: points, y up. */
const builtIn = { id: 1, frame: [0, 0, 1512, 982], scale: 2, name: 'Built-in Display' };

/** What a scene is made of where the test says nothing: one display, everything works. */
const defaults = {
  screens: [builtIn],
  mainScreen: 0,       // index into screens; null: none
  mainDisplayId: 1,
  content: {},         // over contentDefaults; the displays are those of the screens
  image: {},           // over imageDefaults
  jpeg: { bytes: 1000 },
  cursor: [0, 0],      // where the pointer is, until a mouse event is posted
  running: [],         // the running applications, each over runningDefaults
  frontmost: null,     // the process identifier of one of them
  windows: [],         // entries of the on-screen window list, front to back; null: no list
  locations: {},       // bundle identifier: path of the application that the system knows
  bundles: {},         // path: { bundleId, info } of the bundle there
  files: [],           // the paths where something is, in the folders of applications
  displayNames: {},    // path: display name
  query: {},           // over queryDefaults
  open: {},            // over openDefaults
  clipboard: null,     // { text }; without a text something else or nothing
  isTrusted: false,
  mayReadScreen: false,
  mainQueue: 'serviced',
  timeScale: 1,        // by which the waits that the addon asks for are multiplied
  failing: [],         // names of calls that give nil, NULL or an error whenever they are made
};
const contentDefaults = {
  applications: [], result: 'content', error: 'content refused', answer: 'thread', times: 1,
};
const imageDefaults = {
  result: 'image', error: 'capture refused', answer: 'thread', times: 1, size: [3024, 1964],
};

const runningDefaults = { policy: 0, bundleId: null, name: null, isHidden: false };
const queryDefaults = { results: [], answer: 'thread', times: 1 };
const openDefaults = {
  result: 'application', application: { ...runningDefaults, pid: 900 }, error: 'open refused',
  answer: 'thread', times: 1,
};

/** Makes ten seconds last a few milliseconds. */
const shortTimeouts = { timeScale: 0.002 };

/** The base64 text of the data that the doubles encode a picture to. */
function jpegText(bytes = defaults.jpeg.bytes) {
  return Buffer.from(Uint8Array.from({ length: bytes }, (_, i) => [0xff, 0xd8, 0xff][i] ?? i))
    .toString('base64');
}

/** What the window list has of a window: an entry for each value that is given. */
function windowEntry({ pid, layer, alpha, name, bounds }) {
  const [X, Y, Width, Height] = bounds ?? [];
  const entry = {
    kCGWindowOwnerPID: pid, kCGWindowLayer: layer, kCGWindowAlpha: alpha,
    kCGWindowOwnerName: name, kCGWindowBounds: bounds && { X, Y, Width, Height },
  };
  return Object.fromEntries(Object.entries(entry).filter(([, value]) => value !== undefined));
}

/** The displays that screens stand for, from the top-left corner of the first one, y down. */
function displaysOf(screens) {
  const primaryHeight = screens[0]?.frame[3] ?? 0;
  return screens
    .filter((screen) => screen.id !== undefined)
    .map(({ id, frame: [x, y, w, h] }) => ({ id, bounds: [x, primaryHeight - (y + h), w, h] }));
}

/** A whole scene from what a test says of it, for those that speak to the doubles themselves. */
function sceneWithDefaults(script) {
  const whole = { ...defaults, ...script };
  whole.displays ??= displaysOf(whole.screens);
  const displays = whole.displays
    .map(({ id, bounds: [, , width, height] }) => ({ id, width, height }));
  whole.content = { displays, ...contentDefaults, ...whole.content };
  whole.image = { ...imageDefaults, ...whole.image };
  whole.running = whole.running.map((application) => ({ ...runningDefaults, ...application }));
  whole.query = { ...queryDefaults, ...whole.query };
  whole.open = { ...openDefaults, ...whole.open };
  return whole;
}

/** Resolves once `condition()` holds; says false when it did not within the deadline. */
async function until(condition, withinMs = deadlineMs) {
  const deadline = Date.now() + withinMs;
  while (!condition()) {
    if (Date.now() > deadline) return false;
    await new Promise(setImmediate);
  }
  return true;
}

/** Main queues that keep their blocks until the test sees to them. */
const unattended = ['stalled', 'run loop'];

/** Whether nothing is under way. */
function isAtRest(script) {
  const { frameworkThreads, mainQueueBlocks } = doubles.leftovers();
  return frameworkThreads === 0 && (unattended.includes(script.mainQueue) || mainQueueBlocks === 0);
}

/** What the end of a test finds wrong, in words; empty when nothing is. */
async function problems(script) {
  const found = [];
  if (!await until(() => isAtRest(script))) found.push('the frameworks did not come to rest');

  const { mainQueueBlocks, heldAnswers } = doubles.leftovers();
  if (mainQueueBlocks > 0 && !script.leavesMainQueueBlocks) {
    found.push(`${mainQueueBlocks} main-queue blocks were not run`);
  }
  if (heldAnswers > 0) found.push(`${heldAnswers} held answers were not delivered`);

  doubles.discard();
  const isEmpty = () => {
    const { objects, blocks, pools } = doubles.leftovers();
    return Object.keys(objects).length === 0 && blocks === 0 && pools === 0;
  };
  if (!await until(isEmpty, leftoverDeadlineMs)) {
    const { objects, blocks, pools } = doubles.leftovers();
    for (const [label, count] of Object.entries(objects)) found.push(`alive: ${count} ${label}`);
    if (blocks !== 0) found.push(`blocks alive: ${blocks}`);
    if (pools !== 0) found.push(`autorelease pools open: ${pools}`);
  }
  return [...found, ...doubles.violations()];
}

let isInScene = false;

/** Sets the scene for a test, one per test, and returns what the test needs of it. */
function scene(t, script = {}) {
  assert.equal(isInScene, false, 'another scene is still on');
  isInScene = true;
  let whole = sceneWithDefaults(script);
  doubles.begin(whole);
  t.after(async () => {
    const found = await problems(whole);
    isInScene = false;
    assert.deepEqual(found, []);
  });
  return {
    addon,

    /** The calls so far, [name, ...arguments] each, in order; those of one kind of thread if named:
     * 'js', 'worker', 'main queue' or 'completion'. */
    calls: (role) => doubles.calls()
      .filter((call) => role === undefined || call.role === role)
      .map(({ call }) => call),

    /** The calls with this name. */
    callsTo: (name) => doubles.calls().map(({ call }) => call).filter((call) => call[0] === name),

    /** The calls of each single thread, in order. */
    callsByThread: () => {
      const threads = new Map();
      for (const { thread, role, call } of doubles.calls()) {
        const key = `${role} ${thread}`;
        threads.set(key, [...(threads.get(key) ?? []), call]);
      }
      return threads;
    },

    /** Waits until no framework thread and no main-queue block is left to run. */
    rest: async () => {
      assert.ok(await until(() => isAtRest(whole)), 'the frameworks did not come to rest');
    },

    serviceMainQueue: () => doubles.serviceMainQueue(),
    waitingMainQueueBlocks: () => doubles.leftovers().mainQueueBlocks,

    /** Delivers the held answers of 'content', 'image', 'query' or 'open', or all; how many there were. */
    deliver: (subject) => doubles.deliver(subject),
    heldAnswers: () => doubles.leftovers().heldAnswers,

    /** Goes on with another scene, over the first one. */
    change: (changes) => {
      whole = sceneWithDefaults({ ...script, ...changes });
      doubles.change(whole);
    },

    failCall: (ordinal) => doubles.failCall(ordinal),
    failableCalls: () => doubles.failableCalls(),

    /** Waits for a condition; fails the test when it does not come about. */
    until: async (condition) => assert.ok(await until(condition), `never: ${condition}`),
  };
}

module.exports = {
  scene, sceneWithDefaults, windowEntry, until, builtIn, shortTimeouts, jpegText, doubles, addon,
  addonPath,
};
