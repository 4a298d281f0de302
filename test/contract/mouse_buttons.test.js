'use strict';
// Button names, as the functions of the mouse take them.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene } = require('./harness');
const { mouse, move, pause } = require('./input_calls');

const left = [0, 1, 2, 6];
const right = [1, 3, 4, 7];
const middle = [2, 25, 26, 27];

const names = [
  ['left', left], ['LEFT', left], ['0', left], ['', left], ['center', left], ['centre', left],
  ['right ', left], [' right', left], ['middle ', left], ['right\0', left], ['nonsense', left],
  ['RİGHT', left],
  ['right', right], ['Right', right], ['RIGHT', right], ['1', right],
  ['middle', middle], ['Middle', middle], ['MiDdLe', middle], ['2', middle],
];

for (const [name, [button, down, up, drag]] of names) {
  test(`'${name.replace('\0', '\\0')}' means button ${button} with types ${down}, ${up} and ${drag}`,
    (t) => {
      const mac = scene(t);
      mac.addon.mouseDown(name, 3, 4);
      mac.addon.mouseUp(name, 5, 6);
      mac.addon.mouseClick(name, 7, 8);
      mac.addon.mouseDrag(1, 2, 1, 2, name);
      assert.deepEqual(mac.calls(), [
        ...mouse(down, 3, 4, button),
        ...mouse(up, 5, 6, button),
        ...move(7, 8),
        ...mouse(down, 7, 8, button), ...pause(50_000), ...mouse(up, 7, 8, button),
        ...move(1, 2), ...pause(50_000),
        ...mouse(down, 1, 2, button), ...pause(50_000),
        ...Array.from({ length: 10 }, () => [...mouse(drag, 1, 2, button), ...pause(10_000)]).flat(),
        ...pause(50_000),
        ...mouse(up, 1, 2, button),
      ]);
    });
}
