'use strict';

const { startHost } = require('./host.js');
const { startPainter, temporaryFolder } = require('./painter.js');
const { start } = require('./processes.js');
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

/**
 * A private desktop: a server, a painter on it and a fresh host of the addon; all of it is gone
 * when the test ends. `manager`: with a window manager. Other options are those of the server.
 */
async function startDesktop(t, { manager = false, ...options } = {}) {
  const server = await startXServer(t, options);
  const painter = startPainter(t, server.env);
  if (manager) await startWindowManager(t, server.env, painter);
  const host = startHost(t, server.env);
  return { server, env: server.env, painter, host, addon: host.addon };
}

module.exports = { startDesktop };
