'use strict';

// Opening applications: those that run come to the front, others are launched.
const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { describe, test } = require('node:test');
const { startApplications } = require('../support/applications.js');
const { atEnd } = require('../support/cleanup.js');
const { NOWHERE, startHost } = require('../support/host.js');
const { startTerminal } = require('../support/programs.js');
const { until } = require('../support/until.js');

const QUICK_MS = 5000;

function window(name, x, y, more = {}) {
  return { x, y, width: 200, height: 150, colour: '#c00000', wmClass: `${name}/${name}`, ...more };
}

/** What the kernel says of a process, also of one that has ended and that nobody has asked about. */
function statusOf(pid) {
  const stat = fs.readFileSync(`/proc/${pid}/stat`, 'latin1');
  const [state, parent, , session] = stat.slice(stat.lastIndexOf(')') + 2).split(' ');
  return { state, parent: Number(parent), session: Number(session) };
}

/** The files and the environment of a running process, and the session that it is in. */
function processFacts(pid) {
  const files = {};
  for (const name of fs.readdirSync(`/proc/${pid}/fd`)) {
    try {
      files[name] = fs.readlinkSync(`/proc/${pid}/fd/${name}`);
    } catch {
      // it was closed meanwhile
    }
  }
  const environment = fs.readFileSync(`/proc/${pid}/environ`, 'latin1');
  const pairs = environment.split('\0').map((text) => text.split(/=(.*)/s));
  return { session: statusOf(pid).session, files, variables: Object.fromEntries(pairs) };
}

/** The zombies among the children of a process. */
function zombiesOf(parent) {
  return fs.readdirSync('/proc').filter((pid) => {
    if (!/^\d+$/.test(pid)) return false;
    try {
      const status = statusOf(pid);
      return status.parent === parent && status.state === 'Z';
    } catch {
      return false; // gone meanwhile
    }
  });
}

/** Ends what was launched, with all that it has started. */
async function endSession(pid) {
  process.kill(-pid, 'SIGKILL');
  await until(() => !fs.existsSync(`/proc/${pid}`), 'a launched process has ended');
}

const TERMINAL = { Name: 'Terminal', Exec: 'xterm -class Launched', StartupWMClass: 'Launched' };

for (const manager of [true, false]) {
  const where = manager ? 'with a window manager' : 'without one';
  describe(`openApp, ${where}`, () => {
    test('launches what does not run, and is true when its window is in front', async (t) => {
      const { addon, painter } = await startApplications(t, {
        manager,
        entries: { launched: TERMINAL },
      });
      await painter.window('other', window('Other', 500, 300));
      assert.equal(await addon.openApp('launched'), true);
      assert.equal((await addon.getFrontmostApp()).bundleId, 'launched');
      const [first] = await addon.getWindowList();
      assert.equal(first.bundleId, 'launched');
    });

    test('brings what runs to the front, and launches nothing', async (t) => {
      const scene = await startApplications(t, { manager, entries: { launched: TERMINAL } });
      const { addon, painter, runningIds, windowIds } = scene;
      const args = ['-class', 'Launched'];
      await startTerminal(t, scene, { geometry: '30x8+20+30', probe: { x: 80, y: 80 }, args });
      await painter.window('other', window('Other', 100, 100));
      await painter.window('another', window('Another', 120, 120));
      assert.equal(await addon.openApp('launched'), true);
      const isInFront = async () => (await windowIds())[0] === 'launched';
      await until(isInFront, 'its window is in front');
      await scene.isFrontmost('launched');
      assert.equal((await runningIds()).filter((id) => id === 'launched').length, 1);
    });

    test('brings all windows forward, in their order', async (t) => {
      const { addon, painter, windowIds } = await startApplications(t, { manager });
      await painter.window('back', window('Mine', 100, 100));
      await painter.window('front', window('Mine', 120, 120, { width: 220 }));
      await painter.window('other', window('Other', 140, 140));
      assert.equal(await addon.openApp('Mine'), true);
      const isSo = async () => (await windowIds()).join() === 'Mine,Mine,Other';
      await until(isSo, 'both are in front');
      const [{ w }, { w: behind }] = await addon.getWindowList();
      assert.ok(w > behind, 'the foremost stays the foremost');
    });

    test('shows what is hidden', async (t) => {
      const { addon, painter, showsExactly, isFrontmost } = await startApplications(t, { manager });
      await painter.window('one', window('One', 100, 100));
      await painter.window('two', window('One', 300, 300));
      await addon.hideApps(['One']);
      await showsExactly([]);
      assert.equal(await addon.openApp('One'), true);
      await showsExactly(['One', 'One']);
      await isFrontmost('One');
    });
  });
}

describe('openApp', () => {
  test('what is launched stands on its own feet', async (t) => {
    const scene = await startApplications(t, {
      manager: true,
      entries: { launched: { ...TERMINAL, StartupNotify: 'true' } },
    });
    const { addon, env, host, windowIds } = scene;
    await host.setEnvironment({ DISPLAY: ':59998', DESKTOP_STARTUP_ID: 'of the host' });
    assert.deepEqual(await windowIds(), [], 'the host has a connection');
    await host.setEnvironment({ DISPLAY: env.DISPLAY });
    assert.equal(await addon.openApp('launched'), true);
    const [{ pid }] = await addon.getWindowList();
    const { files, session, variables } = processFacts(pid);
    assert.equal(session, pid, 'it leads a session of its own');
    for (const name of ['0', '1', '2']) assert.equal(files[name], '/dev/null', `stream ${name}`);
    const ofHost = new Set(Object.values(processFacts(host.pid).files));
    const shared = Object.values(files).filter((file) => file !== '/dev/null' && ofHost.has(file));
    assert.deepEqual(shared, [], 'it shares no descriptor with the host');
    assert.equal(variables.DISPLAY, env.DISPLAY);
    assert.match(variables.DESKTOP_STARTUP_ID, /^deskhand-\d+-\d+_TIME\d+$/);
    await host.end();
    const other = scene.startHost();
    assert.equal((await other.addon.listRunningApps())[0].pid, pid, 'it outlives the host');
  });

  test('it is shown on the display that the host works on', async (t) => {
    const { addon, env, host } = await startApplications(t, { entries: { launched: TERMINAL } });
    await addon.getWindowList();
    await host.setEnvironment({ DISPLAY: ':59998' });
    assert.equal(await addon.openApp('launched'), true);
    const [{ pid }] = await addon.getWindowList();
    assert.equal(processFacts(pid).variables.DISPLAY, env.DISPLAY);
  });

  test('no zombie is left of it', async (t) => {
    const { addon, host, runningIds } = await startApplications(t, {
      entries: { launched: TERMINAL },
    });
    assert.equal(await addon.openApp('launched'), true);
    const [{ pid }] = await addon.listRunningApps();
    process.kill(pid, 'SIGKILL');
    await until(async () => (await runningIds()).length === 0, 'it has ended');
    assert.deepEqual(zombiesOf(host.pid), []);
  });

  test('one that hands over to another process counts when that has a window', async (t) => {
    const scene = await startApplications(t);
    const { addon, folders } = scene;
    const script = folders.script('hand-over', 'setsid xterm -class Receiver &\nexit 0');
    folders.put('user', 'receiver', { Name: 'R', Exec: script, StartupWMClass: 'Receiver' });
    assert.equal(await addon.openApp('receiver'), true);
    assert.equal((await addon.getFrontmostApp()).bundleId, 'receiver');
  });

  test('one that is a script counts, whatever the window of its program is called', async (t) => {
    const { addon, folders } = await startApplications(t);
    const script = folders.script('wrapper', 'xterm -class Whatever; true');
    folders.put('user', 'wrapper', { Name: 'Wrapper', Exec: script });
    assert.equal(await addon.openApp('wrapper'), true);
    assert.equal((await addon.getFrontmostApp()).bundleId, 'Whatever');
  });

  test('one that wants the session bus is started without it', async (t) => {
    const entry = { ...TERMINAL, DBusActivatable: 'true' };
    const { addon } = await startApplications(t, { entries: { 'org.test.Launched': entry } });
    assert.equal(await addon.openApp('org.test.Launched'), true);
  });

  test('a browser is launched, and brought to the front the second time', async (t) => {
    const scene = await startApplications(t, { manager: true });
    const { addon, folders, painter } = scene;
    const profile = path.join(folders.root, 'profile');
    const options = '--no-sandbox --disable-gpu --no-first-run --disable-background-networking';
    const exec = `chromium ${options} --user-data-dir=${profile} --app=about:blank`;
    folders.put('user', 'chromium', { Name: 'Browser', Exec: exec });
    assert.equal(await addon.openApp('chromium'), true);
    const { pid } = await addon.getFrontmostApp();
    atEnd(t, () => endSession(pid)); // before its profile is removed
    await painter.window('other', window('Other', 100, 100));
    await painter.activate('other'); // a window manager may keep the keyboard where it just came to
    await scene.isFrontmost('Other');
    assert.equal(await addon.openApp('chromium'), true);
    assert.equal((await addon.getFrontmostApp()).pid, pid);
  });

  test('one without a window is false after ten seconds, and in nobody\'s way', async (t) => {
    const { addon, folders } = await startApplications(t);
    folders.put('user', 'silent', { Name: 'Silent', Exec: 'sleep 12' });
    const start = performance.now();
    const opened = addon.openApp('silent');
    for (let count = 0; count < 20; ++count) {
      const before = performance.now();
      await addon.getWindowList();
      await addon.captureDisplay([]);
      assert.ok(performance.now() - before < 2000, 'others are answered meanwhile');
    }
    assert.equal(await opened, false);
    const seconds = (performance.now() - start) / 1000;
    assert.ok(seconds > 9.5 && seconds < 12, `after ${seconds} s`);
  });

  test('what is not installed, or cannot be started, is false at once', async (t) => {
    const { addon, folders, painter } = await startApplications(t);
    await painter.window('one', window('One', 100, 100));
    folders.put('user', 'missing', { Name: 'Missing', Exec: '/nowhere/missing' });
    folders.put('user', 'deleted', { ...TERMINAL, Hidden: 'true' });
    const start = performance.now();
    for (const id of ['nobody', 'one', 'missing', 'deleted', '', '../user/applications/deleted']) {
      assert.equal(await addon.openApp(id), false, id);
    }
    assert.ok(performance.now() - start < QUICK_MS);
  });

  test('other arguments, and no server, are false', async (t) => {
    const { addon } = await startApplications(t);
    for (const args of [[], [42], [null], [['xterm']]]) {
      assert.equal(await addon.openApp(...args), false);
    }
    assert.equal(await startHost(t, NOWHERE).addon.openApp('xterm'), false);
  });
});
