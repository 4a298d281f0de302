// Programs that text is typed into. receive(type) calls `type` when an empty field has the keyboard, in a
// program that has been typed into before and now rests; it resolves with the text that arrived and the
// milliseconds from the call until all of it was there.
import { execFile, spawn } from 'node:child_process';
import { once } from 'node:events';
import { performance } from 'node:perf_hooks';
import { setTimeout as delay } from 'node:timers/promises';
import { promisify } from 'node:util';

import { until } from '../demo/desktop.mjs';

const run = promisify(execFile);

// What has not changed for so long is all that comes.
const STILL_MS = 1500;
const LONGEST_MS = 120_000;
// A page on a busy machine shows nothing of a text for a while.
const LONGEST_START_MS = 15_000;

// A program's first keys take it much longer than all that follow.
const WARM_UP = 'the quick brown fox jumps over the lazy dog '.repeat(10);
const REST_MS = 1000;

const typeWarmUp = () => run('xdotool', ['type', '--delay', '3', WARM_UP]);
const eraseAll = () => run('xdotool', ['key', 'ctrl+a', 'BackSpace']);
const nowMs = () => performance.timeOrigin + performance.now();

/** Whether the window has become the active one; a window manager may have to be told. */
async function activate(title) {
  await run('xdotool', ['search', '--onlyvisible', '--name', `^${title}$`, 'windowactivate']).catch(
    () => {},
  );
  const { stdout } = await run('xdotool', ['getactivewindow', 'getwindowname']).catch(() => ({}));
  return stdout?.trim() === title;
}

/** The page may be moved, or lie below others, until all windows are there. */
async function takeKeyboard(workbench) {
  await until('a page with the keyboard', 20, async () => {
    const { x, y } = workbench.state().places.field;
    await run('xdotool', ['mousemove', Math.round(x), Math.round(y), 'click', '1', 'key', 'a']);
    await delay(200);
    return workbench.state().text !== '';
  });
}

/** The text area of the workbench's page. */
export function pageReceiver(workbench) {
  return {
    name: 'Chromium',
    async receive(type) {
      await workbench.becomes('the page is there', ({ places }) => places.field.x > 0);
      await takeKeyboard(workbench);
      await typeWarmUp();
      await workbench.becomes('a warm page', ({ text }) => text.length >= WARM_UP.length / 2);
      await eraseAll();
      await workbench.becomes('an empty field', ({ text }) => text === '');
      await delay(REST_MS);
      const start = nowMs();
      let last = { text: '', at: start };
      await type();
      const patience = () => (last.at === start ? LONGEST_START_MS : STILL_MS);
      while (nowMs() < last.at + patience() && last.at < start + LONGEST_MS) {
        const { text, changedAtMs } = workbench.state();
        if (text !== last.text) last = { text, at: changedAtMs };
        await delay(10);
      }
      return { text: last.text, ms: last.at - start };
    },
  };
}

/** An entry of GTK, a new one each time: it tells its text when Return is pressed. */
export const entryReceiver = {
  name: 'GTK',
  async receive(type) {
    const title = 'deskhand entry';
    const entry = spawn('zenity', ['--entry', `--title=${title}`], {
      env: { ...process.env, LC_ALL: 'C.UTF-8' }, // it writes the text out in the locale's encoding
      stdio: ['ignore', 'pipe', 'ignore'],
    });
    let text = '';
    let toldAtMs = NaN;
    entry.stdout.setEncoding('utf8').on('data', (data) => {
      text += data;
      toldAtMs = nowMs();
    });
    const ended = once(entry, 'exit');
    await until(title, 30, () => activate(title));
    await delay(300); // the field takes the keyboard a moment after the window
    await typeWarmUp();
    await eraseAll();
    await delay(REST_MS);
    const start = nowMs();
    await type();
    await run('xdotool', ['key', '--delay', '0', 'Return']);
    await ended;
    return { text: text.replace(/\n$/, ''), ms: toldAtMs - start };
  },
};
