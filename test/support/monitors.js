'use strict';

const { execFile } = require('node:child_process');
const { promisify } = require('node:util');

const run = promisify(execFile);

/**
 * Defines a monitor on a server, or moves the one of that name.
 * `output`: the output that it takes from the automatic monitor, 'none' for a further one.
 */
async function setMonitor(env, name, { x, y, width, height, primary = false, output = 'none' }) {
  const geometry = `${width}/300x${height}/200+${x}+${y}`;
  const monitor = (primary ? '*' : '') + name;
  await run('xrandr', ['--delmonitor', name], { env }).catch(() => {});
  await run('xrandr', ['--setmonitor', monitor, geometry, output], { env });
}

async function deleteMonitor(env, name) {
  await run('xrandr', ['--delmonitor', name], { env });
}

/** Defines `monitors` ({ name: geometry }) in place of the automatic one; the first is primary. */
async function setMonitors(env, monitors) {
  let isFirst = true;
  for (const [name, geometry] of Object.entries(monitors)) {
    await setMonitor(env, name, {
      ...geometry,
      primary: isFirst,
      output: isFirst ? 'screen' : 'none',
    });
    isFirst = false;
  }
}

module.exports = { deleteMonitor, setMonitor, setMonitors };
