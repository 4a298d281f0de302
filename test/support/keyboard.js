'use strict';

const path = require('node:path');
const { execFile } = require('node:child_process');
const { promisify } = require('node:util');
const { startLineProgram } = require('./line_program.js');

const run = promisify(execFile);

const root = path.join(__dirname, '..', '..');
const program =
  process.env.DESKHAND_KEYBOARD ?? path.join(root, 'build', 'unit', 'test', 'support', 'keyboard');

/** Keycodes of the usual keyboard, whatever layout is on it. */
const KEY = {
  escape: 9,
  return: 36,
  control: 37,
  g: 42,
  shift: 50,
  pause: 127,
};

/** Core modifier masks. */
const MASK = { shift: 1, lock: 2, control: 4, alt: 8, super: 64 };

/** The devices that all others act through, which programs listen to. */
const CORE_POINTER = 2;
const CORE_KEYBOARD = 3;

/** '3:50,7:50,' as the numbers that device 3 holds, and the other pairs. */
function heldOf(text, core) {
  const pairs = text.split(',').filter(Boolean);
  const isCore = (pair) => pair.startsWith(`${core}:`);
  return {
    core: pairs.filter(isCore).map((pair) => Number(pair.split(':')[1])),
    others: pairs.filter((pair) => !isCore(pair)),
  };
}

/** The keyboard of a server as its user has it; see keyboard.c. */
function startKeyboard(t, env) {
  const ask = startLineProgram(t, program, [], env);
  const order = async (...words) => {
    const [verdict, ...rest] = (await ask(...words)).split(' ');
    if (verdict !== 'ok') throw new Error(`the keyboard cannot do "${words.join(' ')}"`);
    return rest;
  };
  return {
    /**
     * { pointer: [x, y], base, latched, locked, group, keys, buttons, elsewhere }. What is held is
     * that of the core devices; `elsewhere` has that of the others as 'DEVICE:NUMBER'.
     */
    async state() {
      const words = await order('state');
      const { pointer, ...rest } = Object.fromEntries(words.map((word) => word.split('=')));
      const keys = heldOf(rest.keys, CORE_KEYBOARD);
      const buttons = heldOf(rest.buttons, CORE_POINTER);
      const masks = ['base', 'latched', 'locked', 'group'];
      return {
        pointer: pointer.split(',').map(Number),
        ...Object.fromEntries(masks.map((name) => [name, Number(rest[name])])),
        keys: keys.core,
        buttons: buttons.core,
        elsewhere: [...keys.others, ...buttons.others],
      };
    },
    /** Which key gives what with which modifiers, by keycode; keys that give nothing are absent. */
    layout: async () => new Map((await order('layout')).map((word) => word.split('='))),
    /** On the user's own keyboard, which is another than that of programs. */
    press: (keycode) => order('press', keycode),
    release: (keycode) => order('release', keycode),
    /** As programs do it. */
    tap: (keycode) => order('tap', keycode),
    /** Locks modifiers (Caps Lock is one) and unlocks all others. */
    lock: (mask) => order('lock', mask),
    /** Chooses one of several layouts, counted from 0. */
    chooseLayout: (number) => order('group', number),
    /** See startInputDesktop(). */
    async setLayouts(layouts) {
      await run('setxkbmap', ['-layout', layouts], { env });
      await order('group', 0);
    },
  };
}

module.exports = { KEY, MASK, startKeyboard };
