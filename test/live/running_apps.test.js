'use strict';

// Which applications run.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startApplications } = require('../support/applications.js');
const { NOWHERE, startHost } = require('../support/host.js');
const { kill } = require('../support/processes.js');
const { startDialog, startTerminal } = require('../support/programs.js');
const { until } = require('../support/until.js');

function window(name, x, y, more = {}) {
  return { x, y, width: 200, height: 150, colour: '#c00000', wmClass: `${name}/${name}`, ...more };
}

describe('listRunningApps', () => {
  for (const manager of [true, false]) {
    const where = manager ? 'with a window manager' : 'without one';
    test(`lists each application of each process once, ${where}`, async (t) => {
      const scene = await startApplications(t, {
        manager,
        entries: { terminal: { Name: 'Terminal', Exec: 'xterm', 'Name[de]': 'Konsole' } },
      });
      const { addon, painter } = scene;
      assert.deepEqual(await addon.listRunningApps(), []);
      const place = { geometry: '30x8+20+30', probe: { x: 80, y: 80 } };
      const terminal = await startTerminal(t, scene, place);
      await startTerminal(t, scene, { geometry: '30x8+20+400', probe: { x: 80, y: 450 } });
      await startDialog(t, scene, { width: 300, height: 200, text: 'text' });
      await painter.window('one', window('Plain', 700, 100));
      await painter.window('two', window('Plain', 700, 400));
      const apps = await addon.listRunningApps();
      for (const app of apps) {
        assert.deepEqual(Object.keys(app), ['bundleId', 'displayName', 'pid']);
        process.kill(app.pid, 0);
      }
      const names = apps.map(({ bundleId, displayName }) => `${bundleId}/${displayName}`).sort();
      const terminals = ['terminal/Terminal', 'terminal/Terminal'];
      assert.deepEqual(names, ['Plain/Plain', 'Zenity/Zenity', ...terminals]);
      const pids = apps.map(({ pid }) => pid);
      assert.deepEqual(pids, [...pids].sort((a, b) => a - b), 'in the order of processes');
      const german = scene.startHost({ LANGUAGE: 'de' });
      const german_names = (await german.addon.listRunningApps()).map((app) => app.displayName);
      assert.ok(german_names.includes('Konsole'), 'in the language of the user');
      await kill(terminal);
      await until(async () => (await addon.listRunningApps()).length === 3, 'one has ended');
    });
  }

  test('one whose entry is not shown in menus is left out', async (t) => {
    const { painter, runningIds } = await startApplications(t, {
      entries: {
        unseen: { Name: 'Unseen', Exec: 'true', NoDisplay: 'true' },
        foreign: { Name: 'Foreign', Exec: 'true', OnlyShowIn: 'Elsewhere;' },
        seen: { Name: 'Seen', Exec: 'true' },
      },
    });
    for (const name of ['unseen', 'foreign', 'seen']) {
      await painter.window(name, window(name, 100, 100));
    }
    assert.deepEqual(await runningIds(), ['seen']);
  });

  test('one that has popups and docks only is left out', async (t) => {
    const { painter, runningIds, setProperty, startPainter } = await startApplications(t);
    await painter.window('popup', window('Popup', 100, 100, { managed: false }));
    const panel = startPainter();
    await panel.window('panel', window('Panel', 400, 100));
    const type = '_NET_WM_WINDOW_TYPE';
    await setProperty(await panel.id('panel'), type, '32a', `${type}_DOCK`);
    assert.deepEqual(await runningIds(), []);
  });

  test('one is listed while it is hidden or minimized', async (t) => {
    const { addon, painter, runningIds, showsExactly } = await startApplications(t, {
      manager: true,
    });
    await painter.window('one', window('One', 100, 100));
    await painter.window('two', window('Two', 400, 100));
    await painter.iconify('one');
    await addon.hideApps(['Two']);
    await showsExactly([]);
    assert.deepEqual((await runningIds()).sort(), ['One', 'Two']);
  });

  test('an entry that comes or goes is noticed', async (t) => {
    const { addon, folders, painter } = await startApplications(t);
    await painter.window('one', window('Editor', 100, 100));
    const first = async () => {
      const [{ bundleId, displayName }] = await addon.listRunningApps();
      return `${bundleId}/${displayName}`;
    };
    assert.equal(await first(), 'Editor/Editor');
    folders.put('user', 'editor', { Name: 'Text Editor', Exec: 'true' });
    await until(async () => (await first()) === 'editor/Text Editor', 'the entry is known');
  });

  test('without a server nothing runs', async (t) => {
    assert.deepEqual(await startHost(t, NOWHERE).addon.listRunningApps(), []);
  });
});
