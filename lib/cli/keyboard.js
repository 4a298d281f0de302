'use strict';

const { acting } = require('./mouse.js');
const { givenText, requireInput } = require('./native.js');
const { integer } = require('./values.js');

/** The longest hold that is counted right. */
const MAX_HOLD_MS = 4_294_967;

function key(addon, [chord], { repeat, hold }) {
  if (hold === undefined) addon.keyPress(chord, repeat);
  else addon.keyHold(chord, hold);
  return hold === undefined ? { chord, repeat } : { chord, hold };
}

async function type({ words: [word], load }) {
  const addon = load();
  requireInput(addon);
  const text = await givenText(word);
  addon.typeText(text);
  return { value: { typed: text } };
}

module.exports = [
  {
    name: 'key',
    summary: 'press a key, with modifiers',
    words: [['<chord>', 'names of keys joined by "+": cmd+shift+t']],
    options: [
      ['--repeat <n>', 'how often', { parse: integer(1, 10_000), preset: 1 }],
      [
        '--hold <ms>',
        'hold it for so many milliseconds',
        { parse: integer(0, MAX_HOLD_MS), conflicts: 'repeat' },
      ],
    ],
    examples: [
      'deskhand key return',
      'deskhand key ctrl+s',
      'deskhand key down --repeat 5',
      'deskhand key w --hold 800',
    ],
    run: acting(key),
  },
  {
    name: 'type',
    summary: 'type text into what has the keyboard focus',
    words: [['[text]', 'what to type; standard input when it is absent or "-"']],
    examples: [
      "deskhand type 'Hello, world'",
      'deskhand type < letter.txt',
      "deskhand type -- '--help'",
    ],
    run: type,
  },
];
