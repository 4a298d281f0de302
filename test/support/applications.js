'use strict';

const { execFile } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { promisify } = require('node:util');
const { startDesktop } = require('./desktop.js');
const { temporaryFolder } = require('./painter.js');
const { until } = require('./until.js');

const run = promisify(execFile);

/** The text of a desktop entry. */
function entryText(keys) {
  const lines = Object.entries({ Type: 'Application', ...keys }).map((pair) => pair.join('='));
  return ['[Desktop Entry]', ...lines, ''].join('\n');
}

/**
 * Folders for desktop entries that no other program looks at: the user's and the system's.
 * `put(folder, name, keys)` writes an entry, and gives its path.
 */
function makeEntryFolders(t) {
  const root = temporaryFolder(t);
  const data = (name) => path.join(root, name);
  const folder = (name) => path.join(data(name), 'applications');
  fs.mkdirSync(folder('user'), { recursive: true });
  fs.mkdirSync(folder('system'), { recursive: true });
  return {
    root,
    user: folder('user'),
    system: folder('system'),
    variables: {
      ...{ XDG_DATA_HOME: data('user'), XDG_DATA_DIRS: data('system') },
      ...{ XDG_CURRENT_DESKTOP: 'Private', LANGUAGE: 'en' },
      // Nobody is there: programs are started, not asked.
      DBUS_SESSION_BUS_ADDRESS: `unix:path=${path.join(root, 'no-bus')}`,
    },
    put(where, name, keys) {
      const file = path.join(folder(where), `${name}.desktop`);
      fs.mkdirSync(path.dirname(file), { recursive: true });
      fs.writeFileSync(file, entryText(keys));
      return file;
    },
    /** A program of a few lines of shell. */
    script(name, lines) {
      const file = path.join(root, name);
      fs.writeFileSync(file, `#!/bin/sh\n${lines}\n`, { mode: 0o755 });
      return file;
    },
  };
}

/** A private desktop with entries of its own; `entries`: { id: keys }, for the user's folder. */
async function startApplications(t, { entries = {}, variables = {}, ...options } = {}) {
  const folders = makeEntryFolders(t);
  for (const [name, keys] of Object.entries(entries)) folders.put('user', name, keys);
  const desktop = await startDesktop(t, {
    variables: { ...folders.variables, ...variables },
    ...options,
  });
  const { addon, env } = desktop;
  /** The bundle identifiers of the windows, front to back. */
  const windowIds = async () => (await addon.getWindowList()).map(({ bundleId }) => bundleId);
  const runningIds = async () => (await addon.listRunningApps()).map(({ bundleId }) => bundleId);
  return {
    ...desktop,
    folders,
    windowIds,
    runningIds,
    /** Resolves when exactly these have windows on the screen, in any order. */
    async showsExactly(ids) {
      const wanted = [...ids].sort().join();
      let last;
      await until(async () => (last = (await windowIds()).sort().join()) === wanted, 'that').catch(
        () => {
          throw new Error(`on the screen is ${last} instead of ${wanted}`);
        },
      );
    },
    /** Resolves when it is this application that the user works in. */
    async isFrontmost(id) {
      const isSo = async () => (await addon.getFrontmostApp())?.bundleId === id;
      await until(isSo, `${id} is the frontmost application`);
    },
    /** Sets a property of a window of painter's; `format` as xprop takes it: '32c', '32a', ... */
    async setProperty(id, name, format, value) {
      await run('xprop', ['-id', id, '-f', name, format, '-set', name, value], { env });
    },
  };
}

/** The bounds of the frame that a window lies in, or else of the window itself. */
async function frameOf(env, id) {
  const { stdout: tree } = await run('xwininfo', ['-tree', '-id', id], { env });
  const [, root] = /Root window id: (0x\w+)/.exec(tree);
  const [, parent] = /Parent window id: (0x\w+)/.exec(tree);
  if (parent !== root) return frameOf(env, parent);
  const { stdout } = await run('xwininfo', ['-id', id], { env });
  const number = (label) => Number(new RegExp(`${label}: +(-?\\d+)`).exec(stdout)[1]);
  const border = 2 * number('Border width');
  return {
    x: number('Absolute upper-left X') - border / 2,
    y: number('Absolute upper-left Y') - border / 2,
    w: number('Width') + border,
    h: number('Height') + border,
  };
}

/** Where a window record says that the window is. */
function placeOf({ x, y, w, h }) {
  return { x, y, w, h };
}

module.exports = { entryText, frameOf, makeEntryFolders, placeOf, startApplications };
