// One package that acts, in a process of its own: moves the pointer, asks where it is, types.
import { execFileSync } from 'node:child_process';
import { createRequire } from 'node:module';
import { performance } from 'node:perf_hooks';

const require = createRequire(import.meta.url);

const xdotool = (...args) => execFileSync('xdotool', args);

/** Each gives move(x, y), query() and type(text); the calls of a package that waits are awaited. */
const packages = {
  deskhand() {
    const deskhand = require('..');
    return {
      move: deskhand.mouseMove,
      query: deskhand.getCursorPosition,
      type: deskhand.typeText,
    };
  },
  robotjs() {
    const robot = require('robotjs');
    robot.setXDisplayName(process.env.DISPLAY);
    robot.setMouseDelay(0);
    robot.setKeyboardDelay(0);
    return { move: robot.moveMouse, query: robot.getMousePos, type: robot.typeString };
  },
  'nut-js'() {
    const { Point, keyboard, mouse } = require('@nut-tree-fork/nut-js');
    mouse.config.autoDelayMs = 0;
    keyboard.config.autoDelayMs = 0;
    return {
      move: (x, y) => mouse.setPosition(new Point(x, y)),
      query: () => mouse.getPosition(),
      type: (text) => keyboard.type(text),
    };
  },
  xdotool: () => ({
    move: (x, y) => xdotool('mousemove', x, y),
    query: () => xdotool('getmouselocation'),
    type: (text) => xdotool('type', '--', text),
  }),
  'xdotool, no delay': () => ({
    type: (text) => xdotool('type', '--delay', '0', '--', text),
  }),
};

export const names = Object.keys(packages);

async function times(count, perform) {
  const microseconds = [];
  for (let index = 0; index < count; ++index) {
    const start = performance.now();
    await perform(index);
    microseconds.push((performance.now() - start) * 1000);
  }
  return microseconds;
}

async function serve(name) {
  const actor = packages[name]();
  const answer = {
    move: ({ count }) => times(count, (index) => actor.move(100 + (index % 300), 50)),
    query: ({ count }) => times(count, () => actor.query()),
    type: ({ text }) => times(1, () => actor.type(text)),
  };
  process.on('disconnect', () => process.exit());
  process.on('message', async (message) => {
    try {
      process.send({ answer: await answer[message.request](message) });
    } catch (error) {
      process.send({ error: error.message.split('\n')[0] });
    }
  });
  process.send({ answer: 'ready' });
}

if (process.send) {
  await serve(process.argv[2]).catch((error) =>
    process.send({ error: error.message.split('\n')[0] }),
  );
}
