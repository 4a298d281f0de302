'use strict';

// What the fault plans do through a proxy that spoils answers, and what may come of it.
const assert = require('node:assert/strict');
const { isDeepStrictEqual } = require('node:util');
const { NOWHERE, startHost } = require('../support/host.js');
const { startInputDesktop } = require('../support/input_desktop.js');
const { setMonitors } = require('../support/monitors.js');
const { assertColour, decode } = require('../support/picture.js');
const { inputFunctions } = require('./fault_input.js');
const { windowFunctions } = require('./fault_windows.js');

const BACKDROP = '#2040c0';
const OUTER = '#20a040';
const SHOWN = '#c02020';
const POINTER = '#e0e020';
const BLACK = '#000000';

const QUESTION_BOUND_MS = 3000;
const CAPTURE_BOUND_MS = 10_000;

/**
 * Two monitors side by side. The pointer is on the right one, and there is `outer`, a window of one
 * application in which a window of another lies, `shown`.
 */
async function startScene(t) {
  const desktop = await startInputDesktop(t, { screen: '640x400x24' });
  await setMonitors(desktop.env, {
    left: { x: 0, y: 0, width: 320, height: 400 },
    right: { x: 320, y: 0, width: 320, height: 400 },
  });
  const { painter } = desktop;
  await painter.background(BACKDROP);
  const outer = { x: 340, y: 200, width: 280, height: 200, colour: OUTER };
  await painter.window('outer', { ...outer, wmClass: 'outer/Outer' });
  const shown = { x: 0, y: 0, width: 140, height: 100, colour: SHOWN };
  await painter.window('shown', { ...shown, wmClass: 'shown/Shown' });
  await painter.embed('shown', 'outer');
  await painter.activate('outer');
  await painter.cursor('outer', POINTER);
  await painter.pointer(560, 360);
  const displays = await desktop.addon.listDisplays();
  return { ...desktop, t, displays, displayId: displays[1].id };
}

// The descriptions that a failure may have, after the words that say what failed.
const lost = /^lost the X server at ':\d+'( while connecting)?$/;
const silent = /^the X server at ':\d+' does not answer$/;
const refusals = [
  /^cannot connect to the X server at ':\d+'$/,
  /^the X server at ':\d+' refused to say what it can do$/,
  /^the X server refused to list its monitors$/,
];
const pictureRefused = /^the X server refused the picture \(error (\d+|unknown)\)$/;
const windowsRefused = /^the X server refused to describe its windows$/;
const exclusionRefused = /^the X server (refused to|cannot) leave windows out$/;

/** Whether a message is one that `subject` may end in. */
function documentedFailures(subject, descriptions) {
  const failures = [
    ['Failed to get shareable content', [lost, silent, ...refusals]],
    [`${subject} capture failed`, [lost, silent, ...descriptions]],
  ];
  return (message) =>
    failures.some(
      ([start, endings]) =>
        message.startsWith(`${start}: `) &&
        endings.some((ending) => ending.test(message.slice(start.length + 2))),
    );
}

/** The value with the pointer elsewhere; so it is when the server does not tell how that looks. */
async function withoutPointer(scene, call) {
  await scene.painter.pointer(10, 10);
  const value = await call(scene.addon, scene);
  await scene.painter.pointer(560, 360);
  return value;
}

/** The whole right monitor. */
async function assertRightMonitor({ base64, width, height }) {
  assert.deepEqual({ width, height }, { width: 320, height: 400 });
  const picture = await decode(base64);
  assertColour(picture, 160, 100, BACKDROP);
  assertColour(picture, 60, 250, SHOWN);
  assertColour(picture, 260, 250, OUTER);
  assertColour(picture, 240, 360, POINTER, 20);
}

/** The part from (200, 180) to (300, 380) of the right monitor, at half its size. */
async function assertRegion({ base64, width, height }) {
  assert.deepEqual({ width, height }, { width: 50, height: 100 });
  const picture = await decode(base64);
  assertColour(picture, 20, 4, BACKDROP);
  assertColour(picture, 20, 30, OUTER);
  assertColour(picture, 20, 90, POINTER, 20);
}

const captureWithout = (bundleId) => (addon, { displayId }) =>
  addon.captureDisplay([bundleId], 0.75, displayId);

function captureOf(name, subject, call, assertRight, descriptions = []) {
  return {
    name,
    call,
    boundMs: CAPTURE_BOUND_MS,
    /** What may be the value: first the one without any fault. */
    async values(scene) {
      const value = await call(scene.addon, scene);
      await assertRight(value);
      return [value, await withoutPointer(scene, call)];
    },
    isDocumented: documentedFailures(subject, [pictureRefused, ...descriptions]),
  };
}

/** The right monitor, with other colours in the place of `shown` and of the rest of `outer`. */
function assertRightMonitorWith(shown, outer) {
  return async ({ base64 }) => {
    const picture = await decode(base64);
    assertColour(picture, 160, 100, BACKDROP);
    assertColour(picture, 60, 250, shown);
    assertColour(picture, 260, 250, outer);
    assertColour(picture, 240, 360, POINTER, 30);
  };
}

/** A list that names an application on the screen. */
function exclusionOf(bundleId, assertRight) {
  return captureOf(
    `captureDisplay without '${bundleId}', which is shown,`,
    'Screenshot',
    captureWithout(bundleId),
    assertRight,
    [windowsRefused, exclusionRefused],
  );
}

/**
 * The functions that ask the server, and everything that may come of each. `leastAnswers`: those
 * that it waits for at least, if not as many as the others. `skips`: which are left unspoilt.
 * `isAlone`: there is only one pointer and one keyboard.
 */
const functions = [
  {
    name: 'listDisplays',
    leastAnswers: { first: 8, later: 1 }, // names of monitors are known by then
    call: (addon) => addon.listDisplays(),
    boundMs: QUESTION_BOUND_MS,
    values: async ({ displays }) => [displays, []],
    isDocumented: () => false,
  },
  {
    name: 'getDisplaySize of an unknown display',
    call: (addon) => addon.getDisplaySize(77),
    boundMs: QUESTION_BOUND_MS,
    async values({ t, displays: [left, right] }) {
      const nothing = await startHost(t, NOWHERE).addon.getDisplaySize(77);
      assert.equal(nothing.width, 0);
      return [{ ...right, id: left.id, isMain: true }, left, nothing];
    },
    isDocumented: () => false,
  },
  captureOf(
    'captureDisplay',
    'Screenshot',
    (addon, { displayId }) => addon.captureDisplay([], 0.75, displayId),
    assertRightMonitor,
  ),
  captureOf(
    'captureRegion',
    'Region',
    (addon, { displayId }) =>
      addon.captureRegion([], 200, 180, 100, 200, 50, 100, 0.75, displayId),
    assertRegion,
  ),
  captureOf(
    "captureDisplay without 'Absent', which is not there,",
    'Screenshot',
    captureWithout('Absent'),
    assertRightMonitor,
    [windowsRefused],
  ),
  exclusionOf('Shown', assertRightMonitorWith(BLACK, OUTER)),
  exclusionOf('Outer', assertRightMonitorWith(BACKDROP, BACKDROP)),
  ...inputFunctions,
  ...windowFunctions,
];

/** What a call came to: { value }, or { failure }, its message. */
async function outcomeOf(promise) {
  try {
    return { value: await promise };
  } catch (error) {
    assert.equal(error.outcome, 'rejected', error.message);
    assert.equal(error.name, 'Error');
    return { failure: error.message };
  }
}

/** The call comes to one of its documented ends in time; which one is returned. */
async function assertDocumented(wanted, values, promise) {
  const start = performance.now();
  const { value, failure } = await outcomeOf(promise);
  const taken = performance.now() - start;
  assert.ok(taken < wanted.boundMs, `took ${Math.round(taken)} ms`);
  if (failure !== undefined) {
    assert.ok(wanted.isDocumented(failure), `fails with "${failure}"`);
    return failure;
  }
  const place = values.findIndex((documented) => isDeepStrictEqual(value, documented));
  assert.ok(place >= 0, `gives ${JSON.stringify(value).slice(0, 500)}`);
  return place;
}

/** The call comes to what it comes to without any fault, and does what it does. */
async function assertWorks(wanted, scene, values, promise) {
  const { value, failure } = await outcomeOf(promise);
  assert.equal(failure, undefined, 'the next call fails');
  assert.deepEqual(value, values[0]);
  await wanted.assertDone?.(scene);
}

module.exports = { assertDocumented, assertWorks, functions, startScene };
