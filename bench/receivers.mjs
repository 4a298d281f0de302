// Programs that text is typed into. receive(type) calls `type` when an empty field has the keyboard,
// and resolves with the text that arrived and the milliseconds from the call until all of it was there.
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

// A new page's first keys take it much longer than all that follow.
const WARM_UP = 'the quick brown fox jumps over the lazy dog '.repeat(10);

/** Whether the window has become the active one; a window manager may have to be told. */
async function activate(title) {
  await run('xdotool', ['search', '--onlyvisible', '--name', `^${title}$`, 'windowactivate']).catch(
    () => {},
  );
  const { stdout } = await run('xdotool', ['getactivewindow', 'getwindowname']).catch(() => ({}));
  return stdout?.trim() === title;
}

/** The text area of the workbench's page. */
export function pageReceiver(workbench) {
  return {
    name: 'Chromium',
    async receive(type) {
      await workbench.becomes('the page is there', ({ places }) => places.field.x > 0);
      const { x, y } = workbench.state().places.field;
      await run('xdotool', ['mousemove', Math.round(x), Math.round(y), 'click', '1']);
      await run('xdotool', ['type', '--delay', '3', WARM_UP]);
      await workbench.becomes('a warm page', ({ text }) => text.length >= WARM_UP.length);
      await run('xdotool', ['key', 'ctrl+a', 'BackSpace']);
      await workbench.becomes('an empty field', ({ text }) => text === '');
      const start = performance.now();
      let last = { text: '', at: start };
      await type();
      const patience = () => (last.at === start ? LONGEST_START_MS : STILL_MS);
      while (performance.now() < last.at + patience() && last.at < start + LONGEST_MS) {
        const { text } = workbench.state();
        if (text !== last.text) last = { text, at: performance.now() };
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
      stdio: ['ignore', 'pipe', 'ignore'],
    });
    let text = '';
    entry.stdout.setEncoding('utf8').on('data', (data) => (text += data));
    const ended = once(entry, 'exit');
    await until(title, 30, () => activate(title));
    await delay(300); // the field takes the keyboard a moment after the window
    const start = performance.now();
    await type();
    await run('xdotool', ['key', '--delay', '0', 'Return']);
    await ended;
    return { text: text.replace(/\n$/, ''), ms: performance.now() - start };
  },
};
