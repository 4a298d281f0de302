'use strict';

// One call of each function of mouse and keyboard, for servers that give trouble.

/**
 * `pausesMs`: the pauses within the call; it takes longer by what it waits for the server.
 * `silenceMs`: the most that it waits for one that does not answer.
 */
const inputCalls = [
  { name: 'mouseClick', pausesMs: 50, call: (addon) => addon.mouseClick('left', 300, 200) },
  {
    name: 'mouseClick with modifiers',
    pausesMs: 50,
    call: (addon) => addon.mouseClick('left', 300, 200, 1, 'ctrl+shift'),
  },
  { name: 'mouseMove', pausesMs: 0, call: (addon) => addon.mouseMove(300, 200) },
  { name: 'mouseDrag', pausesMs: 250, call: (addon) => addon.mouseDrag(300, 200, 350, 250) },
  { name: 'mouseDown', pausesMs: 0, call: (addon) => addon.mouseDown('middle', 300, 200) },
  { name: 'mouseUp', pausesMs: 0, call: (addon) => addon.mouseUp('middle', 300, 200) },
  {
    name: 'scroll',
    pausesMs: 10,
    silenceMs: 14_000, // a wheel that turns far keeps a server busy
    call: (addon) => addon.scroll(1, -2, 300, 200),
  },
  { name: 'typeText', pausesMs: 0, call: (addon) => addon.typeText('Grüße, Привет\n中文\t😀') },
  { name: 'keyPress', pausesMs: 0, call: (addon) => addon.keyPress('ctrl+shift+a') },
  { name: 'keyHold', pausesMs: 20, call: (addon) => addon.keyHold('f5', 20) },
];

module.exports = { inputCalls };
