'use strict';

// Hiding applications and showing them again.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { isDeepStrictEqual } = require('node:util');
const { startApplications } = require('../support/applications.js');
const { NOWHERE, startHost } = require('../support/host.js');
const { startDialog, startTerminal } = require('../support/programs.js');
const { until } = require('../support/until.js');

function window(name, x, y, more = {}) {
  return { x, y, width: 200, height: 150, colour: '#c00000', wmClass: `${name}/${name}`, ...more };
}

/** Resolves when these are the windows: a window manager may take its time to unfold them. */
async function listIs(addon, windows) {
  const isSo = async () => isDeepStrictEqual(await addon.getWindowList(), windows);
  await until(isSo, 'all windows are as they were');
}

for (const manager of [true, false]) {
  const where = manager ? 'with a window manager' : 'without one';
  describe(`hideApps and unhideApps, ${where}`, () => {
    test('all windows of all instances go and come back, and no others', async (t) => {
      const scene = await startApplications(t, {
        manager,
        entries: { terminal: { Name: 'Terminal', Exec: 'xterm' } },
      });
      const { addon, painter, showsExactly } = scene;
      await startTerminal(t, scene, { geometry: '30x8+20+30', probe: { x: 80, y: 80 } });
      await startTerminal(t, scene, { geometry: '30x8+20+400', probe: { x: 80, y: 450 } });
      await startDialog(t, scene, { width: 300, height: 200, text: 'text' });
      await painter.window('other', window('Other', 800, 100));
      const all = ['Other', 'Zenity', 'terminal', 'terminal'];
      await showsExactly(all);
      assert.equal(await addon.hideApps(['terminal', 5, null, 'Zenity', 'nobody']), undefined);
      await showsExactly(['Other']);
      await addon.unhideApps(['Zenity']);
      await showsExactly(['Other', 'Zenity']);
      assert.equal(await addon.unhideApps(['terminal']), undefined);
      await showsExactly(all);
    });

    test('another letter case is another application', async (t) => {
      const { addon, painter, windowIds } = await startApplications(t, { manager });
      await painter.window('one', window('One', 100, 100));
      await addon.hideApps(['one', 'ONE']);
      await addon.hideApps([]);
      assert.deepEqual(await windowIds(), ['One']);
    });

    test('hidden windows are where they were when they come back', async (t) => {
      const { addon, painter, showsExactly } = await startApplications(t, { manager });
      await painter.window('one', window('One', 300, 200));
      const before = await addon.getWindowList();
      await addon.hideApps(['One']);
      await showsExactly([]);
      await addon.unhideApps(['One']);
      await listIs(addon, before);
    });

    test('what is hidden by one host can be shown by another', async (t) => {
      const scene = await startApplications(t, { manager });
      await scene.painter.window('one', window('One', 300, 200));
      await scene.addon.hideApps(['One']);
      await scene.showsExactly([]);
      await scene.host.end();
      const { addon } = scene.startHost();
      await addon.unhideApps(['One']);
      await until(async () => (await addon.getWindowList()).length === 1, 'it is shown');
    });

    test('one that is shown is not touched by unhideApps, a hidden one not by hideApps', async (t) => {
      const { addon, painter, showsExactly, windowIds } = await startApplications(t, { manager });
      await painter.window('one', window('One', 100, 100));
      await painter.window('two', window('Two', 150, 150));
      await addon.unhideApps(['One']);
      assert.deepEqual(await windowIds(), ['Two', 'One'], 'nothing is raised');
      await addon.hideApps(['One']);
      await showsExactly(['Two']);
      await addon.hideApps(['One']);
      await addon.unhideApps(['One']);
      await showsExactly(['One', 'Two']);
    });
  });
}

describe('hideApps and unhideApps', () => {
  test('what the user had minimized before stays minimized', async (t) => {
    const { addon, painter, showsExactly } = await startApplications(t, { manager: true });
    await painter.window('minimized', window('One', 100, 100));
    await painter.window('open', window('One', 400, 100));
    await painter.iconify('minimized');
    await showsExactly(['One']);
    const [before] = await addon.getWindowList();
    await addon.hideApps(['One']);
    await showsExactly([]);
    await addon.unhideApps(['One']);
    await listIs(addon, [before]);
  });

  test('an application that the user has minimized is hidden, and comes back', async (t) => {
    const { addon, painter, showsExactly } = await startApplications(t, { manager: true });
    await painter.window('one', window('One', 100, 100));
    await painter.window('two', window('One', 400, 100));
    for (const name of ['one', 'two']) await painter.iconify(name);
    await showsExactly([]);
    await addon.unhideApps(['One']);
    await showsExactly(['One', 'One']);
  });

  test('popups stay where they are', async (t) => {
    const { addon, painter } = await startApplications(t);
    await painter.window('window', window('One', 100, 100));
    await painter.window('popup', window('One', 600, 400, { managed: false }));
    await addon.hideApps(['One']);
    const { rgb, width } = await painter.grab();
    assert.equal(rgb.readUIntBE(3 * (450 * width + 650), 3), 0xc00000);
    assert.deepEqual(await addon.getWindowList(), []);
  });

  test('windows that close meanwhile do no harm', async (t) => {
    const { addon, painter, startPainter, windowIds } = await startApplications(t);
    await painter.window('rock', window('Rock', 900, 600));
    const storm = startPainter();
    await storm.storm(3, window('Storm', 100, 100, { width: 400, height: 300 }));
    for (let count = 0; count < 60; ++count) {
      await addon.hideApps(['Storm']);
      await addon.unhideApps(['Storm']);
    }
    assert.ok((await storm.calm()) > 10, 'there was a storm');
    assert.deepEqual(await windowIds(), ['Rock']);
  });

  test('other arguments, and no server, change nothing', async (t) => {
    const { addon, painter, windowIds } = await startApplications(t);
    await painter.window('one', window('One', 100, 100));
    for (const name of ['hideApps', 'unhideApps']) {
      for (const args of [[], ['One'], [{ 0: 'One', length: 1 }], [null]]) {
        assert.equal(await addon[name](...args), undefined);
      }
      assert.equal(await startHost(t, NOWHERE).addon[name](['One']), undefined);
    }
    assert.deepEqual(await windowIds(), ['One']);
  });
});
