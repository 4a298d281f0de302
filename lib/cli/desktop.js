'use strict';

// What is on the desktop: displays, windows, applications.
const { displaysOf, serviced } = require('./native.js');
const { table } = require('./output.js');

function listDisplays({ load }) {
  const value = displaysOf(load());
  const rows = value.map(({ id, width, height, originX, originY, scaleFactor, isMain, name }) => [
    ...[id, `${width}x${height}`, `${originX},${originY}`, scaleFactor, isMain ? 'main' : '', name],
  ]);
  return { value, text: table(['ID', 'SIZE', 'ORIGIN', 'SCALE', 'MAIN', 'NAME'], rows) };
}

function listWindows({ load }) {
  const addon = load();
  displaysOf(addon);
  const value = addon.getWindowList();
  const rows = value.map(({ x, y, w, h, displayId, pid, bundleId }) => [
    x,
    y,
    w,
    h,
    displayId,
    pid,
    bundleId,
  ]);
  const headings = ['X', 'Y', 'WIDTH', 'HEIGHT', 'DISPLAY', 'PID', 'BUNDLE ID'];
  return {
    value,
    text: value.length > 0 ? table(headings, rows) : 'There is no window on the screen.',
  };
}

function listRunning(addon) {
  displaysOf(addon);
  const front = addon.getFrontmostApp();
  const isFront = ({ bundleId, pid }) => bundleId === front?.bundleId && pid === front?.pid;
  const value = addon.listRunningApps().map((app) => ({ ...app, isFrontmost: isFront(app) }));
  const rows = value.map(({ bundleId, pid, isFrontmost, displayName }) => [
    ...[bundleId, pid, isFrontmost ? 'front' : '', displayName],
  ]);
  const headings = ['BUNDLE ID', 'PID', 'FRONT', 'NAME'];
  return { value, text: value.length > 0 ? table(headings, rows) : 'No application runs.' };
}

async function listApps({ options, load }) {
  const addon = load();
  if (!options.installed) return listRunning(addon);
  const value = await serviced(() => addon.listInstalledApps());
  const rows = value.map(({ bundleId, path, displayName }) => [bundleId, path, displayName]);
  const headings = ['BUNDLE ID', 'PATH', 'NAME'];
  return { value, text: value.length > 0 ? table(headings, rows) : 'No application is installed.' };
}

module.exports = [
  {
    name: 'displays',
    summary: 'list the displays',
    examples: ['deskhand displays', "deskhand displays --json | jq '.[0].id'"],
    run: listDisplays,
  },
  {
    name: 'windows',
    summary: 'list the windows on the screen, front to back',
    examples: ['deskhand windows', "deskhand windows --json | jq '.[0].bundleId'"],
    run: listWindows,
  },
  {
    name: 'apps',
    summary: 'list the applications that run, or that are installed',
    options: [['--installed', 'those that are installed, running or not']],
    examples: ['deskhand apps', 'deskhand apps --installed', 'deskhand apps --json'],
    run: listApps,
  },
];
