'use strict';

// One text typed into one receiver, under circumstances that must not matter.
const assert = require('node:assert/strict');
const { setTimeout: delay } = require('node:timers/promises');
const { KEY, MASK } = require('./keyboard.js');
const { pause, resume } = require('./processes.js');
const { startEntry, startPage, startTerminal } = require('./receivers.js');
const { startInputDesktop } = require('./input_desktop.js');
const { until } = require('./until.js');

/** How long a receiver does nothing in the middle of a text. */
const STOP_MS = 1500;

/** A desktop with all receivers, to be used one after the other. */
async function startTypingScene(t, options) {
  const desktop = await startInputDesktop(t, options);
  const page = await startPage(t, desktop);
  const terminal = await startTerminal(t, desktop);
  return { ...desktop, receivers: { page, terminal, entry: startEntry(t, desktop) } };
}

/** Fails with the place where the texts part. `where`: who got the text. */
function assertSameText(actual, expected, where = 'it') {
  if (actual === expected) return;
  const [got, wanted] = [[...actual], [...expected]];
  const place = wanted.findIndex((character, index) => got[index] !== character);
  const around = (characters) => JSON.stringify(characters.slice(place, place + 20).join(''));
  assert.fail(
    `${where} has ${got.length} characters for ${wanted.length}; ` +
      `from the ${place}th on ${around(got)} and not ${around(wanted)}`,
  );
}

/** What may be the case while text is typed. */
const circumstances = {
  'nothing in the way': (scene, receiver, action) => action(),

  async 'Caps Lock on'({ keyboard, leavesNoTrace }, receiver, action) {
    await keyboard.lock(MASK.lock);
    try {
      await leavesNoTrace(action); // it is on all the time
    } finally {
      await keyboard.lock(0);
    }
  },

  'Shift held': ({ whileHeld }, receiver, action) => whileHeld(KEY.shift, action),

  'Control held': ({ whileHeld }, receiver, action) => whileHeld(KEY.control, action),

  async 'the receiver stopped'(scene, receiver, action) {
    const typing = action();
    await until(receiver.hasStarted, 'text comes');
    await pause(receiver.program);
    await delay(STOP_MS);
    resume(receiver.program);
    await typing;
  },
};

/** Types `text` as the row says, and fails unless it arrives and nothing else changes. */
async function typeAndCheck(scene, { receiver, layout, circumstance }, text, expected = text) {
  const { addon, leavesNoTrace, receivers, setLayouts } = scene;
  await setLayouts(layout);
  const program = receivers[receiver];
  await program.begin();
  const action = async () => assert.equal(await addon.typeText(text), true);
  await leavesNoTrace(() => circumstances[circumstance](scene, program, action), {
    userActs: circumstance.endsWith(' held'),
  });
  assertSameText(await program.finish(), expected, program.name);
}

module.exports = { assertSameText, circumstances, startTypingScene, typeAndCheck };
