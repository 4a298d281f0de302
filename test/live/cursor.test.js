'use strict';

// Where the pointer is.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startInputDesktop } = require('../support/input_desktop.js');
const { setMonitors } = require('../support/monitors.js');

describe('getCursorPosition', () => {
  test('tells where somebody else has put the pointer', async (t) => {
    const { addon, painter } = await startInputDesktop(t);
    for (const [x, y] of [
      [0, 0],
      [700, 333],
      [1279, 799],
    ]) {
      await painter.pointer(x, y);
      const position = await addon.getCursorPosition();
      assert.deepEqual(position, { x, y });
      assert.deepEqual(Object.keys(position), ['x', 'y']);
    }
  });

  test('tells where mouseMove has put it', async (t) => {
    const { addon, leavesNoTrace } = await startInputDesktop(t);
    await leavesNoTrace(async () => {
      for (let step = 0; step < 100; ++step) {
        const position = { x: (step * 37) % 1280, y: (step * 53) % 800 };
        await addon.mouseMove(position.x, position.y);
        assert.deepEqual(await addon.getCursorPosition(), position);
      }
    });
  });

  test('counts from the primary display, also after another has become that', async (t) => {
    const { addon, env, painter } = await startInputDesktop(t);
    const left = { x: 0, y: 0, width: 640, height: 800 };
    const right = { x: 640, y: 200, width: 640, height: 600 };
    await painter.pointer(100, 50);
    assert.deepEqual(await addon.getCursorPosition(), { x: 100, y: 50 });
    await setMonitors(env, { right, left });
    assert.deepEqual(await addon.getCursorPosition(), { x: -540, y: -150 });
    await painter.pointer(641, 799);
    assert.deepEqual(await addon.getCursorPosition(), { x: 1, y: 599 });
  });

  test('tells a place that mouseMove goes back to', async (t) => {
    const { addon, env, keyboard, painter } = await startInputDesktop(t);
    await setMonitors(env, {
      right: { x: 640, y: 200, width: 640, height: 600 },
      left: { x: 0, y: 0, width: 640, height: 800 },
    });
    await painter.pointer(123, 45);
    const { x, y } = await addon.getCursorPosition();
    await addon.mouseMove(200, 200);
    await addon.mouseMove(x, y);
    assert.deepEqual((await keyboard.state()).pointer, [123, 45]);
  });

  test('ignores arguments, and gives a new object each time', async (t) => {
    const { addon, painter } = await startInputDesktop(t);
    await painter.pointer(5, 6);
    assert.deepEqual(await addon.getCursorPosition(1, 'two', null), { x: 5, y: 6 });
    assert.deepEqual(await addon.getCursorPosition(), { x: 5, y: 6 });
  });
});
