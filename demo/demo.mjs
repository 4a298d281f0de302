// The main job: list the displays, take a screenshot of one, of a region, and without one application,
// list the windows, and show it all on a page. Without a display this happens on a private desktop
// that is gone afterwards; there, the demo also types, drags, scrolls, copies and pastes, and opens,
// hides and shows a program.
// Usage: demo.mjs [BUNDLE-IDENTIFIER of the application to leave out]
import { mkdirSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import path from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';

import { startDesktop, startTerminalFormAndBrowser, until } from './desktop.mjs';
import { renderReport } from './report.mjs';
import { shareText, steer } from './steering.mjs';
import { act, startWorkbench } from './workbench.mjs';

const deskhand = createRequire(import.meta.url)('..');
const out = path.join(path.dirname(fileURLToPath(import.meta.url)), '..', 'out', 'demo');

async function timed(take) {
  const start = performance.now();
  const result = await take();
  return { ...result, milliseconds: performance.now() - start };
}

/** Programs paint in their own time: a picture that stays the same for a while is the end of it. */
async function untilPainted() {
  const enough = 8;
  let last = null;
  let same = 0;
  await until('a screen that stands still', 30, async () => {
    const { base64 } = await deskhand.captureDisplay([]);
    same = base64 === last ? same + 1 : 0;
    last = base64;
    return same >= enough;
  }).catch(() => console.log('The screen does not stand still; taking it as it is.'));
}

function save(name, picture) {
  writeFileSync(path.join(out, name), Buffer.from(picture.base64, 'base64'));
  const { base64, ...rest } = picture;
  console.log(
    `${name}: ${rest.width} x ${rest.height} pixels, ` +
      `${Math.ceil((base64.length * 3) / 4 / 1024)} KiB, ${rest.milliseconds.toFixed(1)} ms`,
  );
  return { name, bytes: Math.floor((base64.length * 3) / 4), ...rest };
}

async function showMainJob(leftOut) {
  const displays = deskhand.listDisplays();
  console.table(displays);
  if (displays.length === 0) throw new Error('there is no display to take a picture of');

  // The first call also makes the connection; the second shows what a screenshot costs from then on.
  const first = await timed(() => deskhand.captureDisplay([]));
  const display = await timed(() => deskhand.captureDisplay([], 0.8));
  const { displayWidth, displayHeight } = display;
  const region = {
    x: Math.round(displayWidth * 0.585),
    y: Math.round(displayHeight * 0.12),
    width: Math.round(displayWidth * 0.41),
    height: Math.round(displayHeight / 2),
  };
  const part = await timed(() =>
    deskhand.captureRegion(
      ...[[], region.x, region.y, region.width, region.height],
      ...[region.width, region.height, 0.9],
    ),
  );
  let without = null;
  if (leftOut) {
    await deskhand.captureDisplay([leftOut]); // programs paint what was covered
    const picture = await timed(() => deskhand.captureDisplay([leftOut], 0.8));
    without = { leftOut, ...save('without.jpg', picture) };
  }
  return {
    displays,
    without,
    firstMilliseconds: first.milliseconds,
    display: save('display.jpg', display),
    region: { ...region, ...save('region.jpg', part) },
  };
}

/** Acts on a page, with a picture after it: the picture before is that of the display. */
async function showActing(workbench) {
  const steps = await act(deskhand, workbench);
  await untilPainted();
  const picture = await timed(() => deskhand.captureDisplay([], 0.8));
  return { steps, ...save('acted.jpg', picture) };
}

/** The windows, and the picture of the display that they are drawn over. */
async function showWindows() {
  await untilPainted();
  const windows = deskhand.getWindowList();
  console.table(windows);
  const picture = await timed(() => deskhand.captureDisplay([], 0.8));
  return { windows, ...save('windows.jpg', picture) };
}

/** Opens, hides and shows a program, with pictures of it. */
async function showSteering(name) {
  const pictures = {};
  const steps = await steer(deskhand, name, async (what) => {
    await untilPainted();
    pictures[what] = save(`${what}.jpg`, await timed(() => deskhand.captureDisplay([], 0.8)));
  });
  return { steps, ...pictures };
}

const PROGRAM = 'UXTerm'; // by the name that its user sees

const hasDisplay = process.platform !== 'linux' || Boolean(process.env.DISPLAY);
console.log(
  hasDisplay
    ? `Using the display that is there${process.env.DISPLAY ? ` (${process.env.DISPLAY})` : ''}.`
    : 'There is no display: starting a private one, with a terminal, a GTK form and a browser.',
);
const leftOut = process.argv[2] ?? (hasDisplay ? null : 'Zenity');
const workbench = hasDisplay ? null : await startWorkbench();
const startPrograms = (desktop) =>
  startTerminalFormAndBrowser({ ...desktop, url: workbench.url });
const desktop = hasDisplay ? null : await startDesktop({ startPrograms });
try {
  mkdirSync(out, { recursive: true });
  if (desktop) await untilPainted();
  const page = path.join(out, 'index.html');
  const seen = await showMainJob(leftOut);
  const acted = workbench && (await showActing(workbench));
  const shared = workbench && (await shareText(deskhand, workbench));
  const steered = workbench && (await showSteering(PROGRAM));
  const listed = await showWindows();
  writeFileSync(page, renderReport({ ...seen, acted, shared, steered, listed }));
  console.log(`The pictures, with sizes and times: ${pathToFileURL(page)}`);
} finally {
  await desktop?.stop();
  workbench?.stop();
}
