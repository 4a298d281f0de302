'use strict';

const { requireInput } = require('./native.js');
const { integer, number, point } = require('./values.js');

const INT32_MAX = 2 ** 31 - 1;
const BUTTON = [
  '--button <name>',
  'which button',
  { choices: ['left', 'right', 'middle'], preset: 'left' },
];

/** A command that acts, and tells what it did only when it is asked to. */
function acting(act) {
  return ({ words, options, load }) => {
    const addon = load();
    requireInput(addon);
    return { value: act(addon, words, options) };
  };
}

function click(addon, [x, y], { button, count, modifiers }) {
  addon.mouseClick(button, x, y, count, modifiers);
  return { x, y, button, count, modifiers: modifiers ?? null };
}

function move(addon, [x, y]) {
  addon.mouseMove(x, y);
  return { x, y };
}

function drag(addon, [startX, startY, endX, endY], { button }) {
  addon.mouseDrag(startX, startY, endX, endY, button);
  return { startX, startY, endX, endY, button };
}

function scroll(addon, [deltaX, deltaY], { at }) {
  if (at) addon.scroll(deltaX, deltaY, at.x, at.y);
  else addon.scroll(deltaX, deltaY);
  return { deltaX, deltaY, at: at ?? null };
}

const lines = integer(-INT32_MAX, INT32_MAX);

module.exports = [
  {
    name: 'click',
    summary: 'click at a point',
    words: [
      ['<x>', 'points from the left edge of the primary display', number],
      ['<y>', 'points from its top edge', number],
    ],
    options: [
      BUTTON,
      ['--count <n>', 'how often: 2 is a double click', { parse: integer(1, 100), preset: 1 }],
      ['--modifiers <names>', 'modifiers to hold, as in "cmd+shift"'],
    ],
    examples: [
      'deskhand click 640 400',
      'deskhand click 640 400 --count 2',
      'deskhand click -200 50 --button right',
      'deskhand click 640 400 --modifiers ctrl+shift',
    ],
    run: acting(click),
  },
  {
    name: 'move',
    summary: 'move the pointer to a point',
    words: [
      ['<x>', 'points from the left edge of the primary display', number],
      ['<y>', 'points from its top edge', number],
    ],
    examples: ['deskhand move 640 400', 'deskhand move -200 50'],
    run: acting(move),
  },
  {
    name: 'drag',
    summary: 'press a button at a point and release it at another',
    words: [
      ['<startX>', 'where to press, in points', number],
      ['<startY>', 'likewise', number],
      ['<endX>', 'where to release', number],
      ['<endY>', 'likewise', number],
    ],
    options: [BUTTON],
    examples: ['deskhand drag 100 100 400 300', 'deskhand drag -300 20 100 20 --button middle'],
    run: acting(drag),
  },
  {
    name: 'scroll',
    summary: 'turn the scroll wheel',
    description:
      'Turns the scroll wheel by lines. On X11 a positive <deltaY> is up, a positive <deltaX> left; on macOS ' +
      "the user's setting decides which way is which.",
    words: [
      ['<deltaX>', 'lines, horizontally', lines],
      ['<deltaY>', 'lines, vertically', lines],
    ],
    options: [['--at <x,y>', 'move the pointer there first', { parse: point }]],
    examples: [
      'deskhand scroll 0 -3',
      'deskhand scroll 0 5 --at 640,400',
      'deskhand scroll 0 5 --at=-100,20',
    ],
    run: acting(scroll),
  },
];

module.exports.acting = acting;
