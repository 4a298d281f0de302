'use strict';

// Mouse and keyboard where the server is missing, dies or stops: each call returns what it always
// returns, in time, and the host lives on and works again.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startHost } = require('../support/host.js');
const { startInputDesktop } = require('../support/input_desktop.js');
const { startKeyboard } = require('../support/keyboard.js');
const { until } = require('../support/until.js');
const { highDisplayNumber, startXServer } = require('../support/x_server.js');
const { inputCalls } = require('./input_calls.js');

const NO_SERVER_MS = 2000;
const SILENCE_MS = 9000;

const ORIGIN = { x: 0, y: 0 };

/** Each function returns what it does without trouble, so long as it takes no longer. */
async function assertReturns(addon, boundMs, calls = inputCalls) {
  for (const { name, pausesMs, call } of calls) {
    const start = performance.now();
    assert.equal(await call(addon), true, name);
    const taken = performance.now() - start;
    assert.ok(taken < boundMs + pausesMs, `${name} took ${Math.round(taken)} ms`);
  }
  const start = performance.now();
  assert.deepEqual(await addon.getCursorPosition(), ORIGIN);
  const taken = performance.now() - start;
  assert.ok(taken < boundMs, `getCursorPosition took ${Math.round(taken)} ms`);
}

/** The pointer goes where it is told to. */
async function assertWorks(addon, keyboard, [x, y] = [70, 60]) {
  assert.equal(await addon.mouseMove(x, y), true);
  assert.deepEqual((await keyboard.state()).pointer, [x, y]);
  assert.deepEqual(await addon.getCursorPosition(), { x, y });
}

async function assertNothingHeld(keyboard) {
  const isFree = async () => {
    const { keys, buttons, elsewhere, base, locked, latched } = await keyboard.state();
    const held = [...keys, ...buttons, ...elsewhere];
    return held.length + base + locked + latched === 0;
  };
  await until(isFree, 'no key and no button is held');
}

describe('without a server', () => {
  for (const [description, DISPLAY] of [
    ['no DISPLAY', undefined],
    ['an empty DISPLAY', ''],
    ['no display name', 'what is this'],
    ['nobody there', ':59999'],
    ['nobody on the network', '127.0.0.1:59999'],
  ]) {
    test(`${description}: all is true, and the pointer is at the origin`, async (t) => {
      const { addon } = startHost(t, { ...process.env, DISPLAY });
      await assertReturns(addon, NO_SERVER_MS);
      await assertReturns(addon, NO_SERVER_MS);
    });
  }

  test('what is wrong with an argument is told as ever', async (t) => {
    const { addon } = startHost(t, { ...process.env, DISPLAY: undefined });
    const thrown = { outcome: 'thrown', name: 'TypeError' };
    await assert.rejects(addon.mouseMove(1), {
      ...thrown,
      message: 'mouseMove requires (x, y)',
    });
    await assert.rejects(addon.typeText(5), {
      ...thrown,
      message: 'typeText requires (text: string)',
    });
    await assert.rejects(addon.keyPress('hyper'), {
      outcome: 'thrown',
      name: 'Error',
      message: "keyPress: no valid key found in chord 'hyper'",
    });
  });

  for (const extension of ['XTEST', 'XKEYBOARD']) {
    test(`nothing happens on one without ${extension}, and all is true`, async (t) => {
      const args = ['-extension', extension];
      const server = await startXServer(t, { args }).catch((error) => error);
      if (server instanceof Error) return t.skip(`no such server: ${server.message}`);
      const { addon } = startHost(t, server.env);
      for (const { name, call } of inputCalls) assert.equal(await call(addon), true, name);
      assert.equal((await addon.listDisplays()).length, 1);
    });
  }
});

describe('a server that dies', () => {
  test('between calls is lost, and used again when it is back', async (t) => {
    const number = highDisplayNumber();
    const { addon, keyboard, server } = await startInputDesktop(t, { number });
    await assertWorks(addon, keyboard);
    for (const { call } of inputCalls) await call(addon);
    await server.kill();
    await assertReturns(addon, NO_SERVER_MS);

    const { env } = await startXServer(t, { number });
    const anotherKeyboard = startKeyboard(t, env);
    await assertWorks(addon, anotherKeyboard);
    await assertNothingHeld(anotherKeyboard);
  });

  for (const { name, call } of inputCalls) {
    test(`during ${name} leaves the host alive`, async (t) => {
      const number = highDisplayNumber();
      const { addon, keyboard, server } = await startInputDesktop(t, { number });
      await assertWorks(addon, keyboard);
      await server.pause();
      const calling = call(addon);
      await server.kill();
      assert.equal(await calling, true);
      assert.deepEqual(await addon.getCursorPosition(), ORIGIN);
    });
  }
});

// They mostly wait, and all at once.
describe('a server that stops', { concurrency: 12 }, () => {
  for (const wanted of inputCalls) {
    for (const when of ['before', 'after']) {
      test(`${when} it was used does not hold ${wanted.name} for long`, async (t) => {
        const { addon, keyboard, server } = await startInputDesktop(t);
        if (when === 'after') await assertWorks(addon, keyboard);
        await server.pause();
        await assertReturns(addon, wanted.silenceMs ?? SILENCE_MS, [wanted]);
        server.resume();
        await assertWorks(addon, keyboard);
        await addon.mouseUp('middle', 70, 60); // mouseDown may have been carried out after all
        await assertNothingHeld(keyboard);
      });
    }
  }

  for (const [title, holds, call] of [
    ['a drag', 'buttons', (addon) => addon.mouseDrag(300, 200, 350, 250)],
    ['a click', 'buttons', (addon) => addon.mouseClick('left', 300, 200)],
    ['a key hold', 'keys', (addon) => addon.keyHold('ctrl+a', 1000)],
  ]) {
    test(`in the middle of ${title} has nothing held when it has gone on`, async (t) => {
      const { addon, keyboard, server } = await startInputDesktop(t);
      await assertWorks(addon, keyboard);
      const calling = call(addon);
      await until(async () => (await keyboard.state())[holds].length > 0, 'something is held');
      await server.pause();
      assert.equal(await calling, true);
      server.resume();
      await assertWorks(addon, keyboard);
      await assertNothingHeld(keyboard);
    });
  }
});
