'use strict';

const { startHost } = require('./host.js');
const { startPainter, temporaryFolder } = require('./painter.js');
const { kill, start } = require('./processes.js');
const { until } = require('./until.js');
const { startXServer } = require('./x_server.js');

/** A window manager on a server; resolves when it manages windows. */
async function startWindowManager(t, env, painter) {
  const home = temporaryFolder(t);
  start(t, 'openbox', ['--sm-disable'], {
    env: { ...env, HOME: home, XDG_CACHE_HOME: home, XDG_CONFIG_HOME: home },
  });
  await until(() => painter.isManaged(), 'a window manager runs');
}

/** Compositing managers, with no effects of their own. */
const COMPOSITORS = {
  xcompmgr: [],
  picom: ['--backend', 'xrender', '--config', '/dev/null'],
};

/** Resolves when a window of that colour comes to the screen and leaves it again. */
async function showsWindows(painter) {
  const place = { x: 0, y: 0, width: 4, height: 4, colour: '#00c0c0', managed: false };
  const isShown = async () => (await painter.grab()).rgb.readUIntBE(0, 3) === 0x00c0c0;
  await painter.window('probe', place);
  await until(isShown, 'a compositing manager shows a window');
  await painter.destroy('probe');
  await until(async () => !(await isShown()), 'a compositing manager takes a window away');
}

/**
 * A compositing manager, 'xcompmgr' or 'picom', on a server; resolves when it paints the screen,
 * with what ends it.
 */
async function startCompositor(t, env, painter, name) {
  const program = start(t, name, COMPOSITORS[name], { env });
  await until(() => painter.isComposited(), `${name} runs`);
  await showsWindows(painter);
  return async () => {
    await kill(program);
    await until(async () => !(await painter.isComposited()), `${name} is gone`);
  };
}

/**
 * A private desktop: a server, a painter on it and a fresh host of the addon; all of it is gone
 * when the test ends. `manager`: with a window manager. `compositor`: with that compositing
 * manager. `variables`: more of the hosts' environment. Other options are those of the server.
 */
async function startDesktop(t, { manager = false, compositor, variables, ...options } = {}) {
  const server = await startXServer(t, options);
  const { env } = server;
  const painter = startPainter(t, env);
  if (manager) await startWindowManager(t, env, painter);
  if (compositor) await startCompositor(t, env, painter, compositor);
  const hostEnv = { ...env, ...variables };
  const host = startHost(t, hostEnv);
  return {
    ...{ server, env, painter, host },
    addon: host.addon,
    /** One more host of the addon; `more` of its environment. */
    startHost: (more) => startHost(t, { ...hostEnv, ...more }),
    /** One more process with windows of its own. */
    startPainter: () => startPainter(t, env),
    startCompositor: (name) => startCompositor(t, env, painter, name),
  };
}

module.exports = { startDesktop };
