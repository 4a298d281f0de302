// The screens that are measured: private ones, with real programs, painted and standing still.
import { createRequire } from 'node:module';

import { startDesktop, startTerminalFormAndBrowser, until } from '../demo/desktop.mjs';
import { startReference } from './players.mjs';
import { makeRandom } from './statistics.mjs';

const deskhand = createRequire(import.meta.url)('..');

/** Small windows of one application, scattered over the screen; each is a process of its own. */
function startLogos({ start }, count) {
  const random = makeRandom(7);
  for (let index = 0; index < count; ++index) {
    const [x, y] = [Math.floor(random() * 1500), Math.floor(random() * 700)];
    start('xlogo', ['-geometry', `400x300+${x}+${y}`]);
  }
  return count;
}

/** So many windows and nothing else. */
export const logos = (count) => (desktop) => startLogos(desktop, count);

/** The usual desktop with ten windows of one application on it. */
export const usualWithLogos = (desktop) =>
  startTerminalFormAndBrowser(desktop) + startLogos(desktop, 10);

/** Resolves when the picture has not changed for a second; the reference looks. */
async function standsStill(size) {
  const enough = 10;
  const reference = await startReference(size);
  let last = null;
  let same = 0;
  try {
    await until('a screen that stands still', 60, async () => {
      const picture = await reference.picture();
      same = picture === last ? same + 1 : 0;
      last = picture;
      return same >= enough;
    });
  } finally {
    await reference.end();
  }
}

/**
 * Calls `use(size)` with a desktop that is gone afterwards. `size`: of the pictures that deskhand
 * takes of it, with the screen's own as `screen`. For the options see startDesktop.
 */
export async function withDesktop(options, use) {
  const desktop = await startDesktop(options);
  try {
    const { density = 1 } = options;
    const screen = { width: 1920 * density, height: 1080 * density };
    const size = { ...deskhand.calculateTargetSize(screen.width, screen.height), screen };
    await standsStill(size);
    return await use(size);
  } finally {
    await desktop.stop();
  }
}
