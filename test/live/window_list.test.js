'use strict';

// Which windows are on the screen, where, and whose, with a window manager and without one.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { frameOf, placeOf, startApplications } = require('../support/applications.js');
const { NOWHERE, startHost } = require('../support/host.js');
const { setMonitors } = require('../support/monitors.js');
const { startBrowser, startDialog, startTerminal } = require('../support/programs.js');
const { until } = require('../support/until.js');
const { startXProxy } = require('../support/x_proxy.js');

const RECORD_KEYS = ['bundleId', 'pid', 'x', 'y', 'w', 'h', 'displayId'];
const RED = '#c00000';
const PAGE = '<html><body style="margin:0;background:#e0f0ff"></body></html>';

function window(name, x, y, more = {}) {
  return { x, y, width: 200, height: 150, colour: RED, wmClass: `${name}/${name}`, ...more };
}

for (const manager of [true, false]) {
  describe(manager ? 'getWindowList with a window manager' : 'getWindowList without one', () => {
    test('lists terminals, a dialog of GTK and a browser, each with its process', async (t) => {
      const scene = await startApplications(t, {
        manager,
        entries: {
          terminal: { Name: 'Terminal', Exec: 'xterm' },
          browser: { Name: 'Browser', Exec: 'chromium %U', StartupWMClass: 'Chromium' },
        },
      });
      const { addon } = scene;
      await startTerminal(t, scene, { geometry: '30x8+20+30', probe: { x: 80, y: 80 } });
      await startTerminal(t, scene, { geometry: '30x8+20+400', probe: { x: 80, y: 450 } });
      await startDialog(t, scene, { width: 300, height: 200, text: 'text' });
      const place = { x: 800, y: 60, width: 400, height: 300 };
      await startBrowser(t, scene, {
        ...{ html: PAGE, ...place, probe: { x: 1000, y: 250 }, colour: '#e0f0ff' },
      });
      const windows = await addon.getWindowList();
      for (const record of windows) assert.deepEqual(Object.keys(record), RECORD_KEYS);
      const terminals = windows.filter(({ bundleId }) => bundleId === 'terminal');
      assert.equal(terminals.length, 2);
      assert.notEqual(terminals[0].pid, terminals[1].pid);
      assert.equal(windows.filter(({ bundleId }) => bundleId === 'Zenity').length, 1);
      assert.equal(windows.filter(({ bundleId }) => /browser|hromium/.test(bundleId)).length, 1);
      assert.equal(windows.length, 4);
      for (const { pid } of windows) process.kill(pid, 0);
    });

    test('windows come front to back, and a raised one comes first', async (t) => {
      const { painter, windowIds } = await startApplications(t, { manager });
      await painter.window('one', window('One', 100, 100));
      await painter.window('two', window('Two', 150, 150));
      await painter.window('three', window('Three', 200, 200));
      assert.deepEqual(await windowIds(), ['Three', 'Two', 'One']);
      await painter.raise('one');
      await until(async () => (await windowIds())[0] === 'One', 'the raised window is in front');
      assert.deepEqual(await windowIds(), ['One', 'Three', 'Two']);
    });

    test('two windows of an application are two records of one process', async (t) => {
      const { addon, painter } = await startApplications(t, { manager });
      await painter.window('one', window('Same', 100, 100));
      await painter.window('two', window('Same', 500, 300));
      const [first, second] = await addon.getWindowList();
      assert.equal(first.bundleId, 'Same');
      assert.deepEqual([second.bundleId, second.pid], [first.bundleId, first.pid]);
    });

    test('popups, docks, menus, notifications and desktops are not listed', async (t) => {
      const { painter, setProperty, windowIds } = await startApplications(t, { manager });
      const kinds = ['DOCK', 'DESKTOP', 'NOTIFICATION', 'TOOLTIP', 'POPUP_MENU'];
      for (const [index, kind] of kinds.entries()) {
        await painter.window(kind, window(kind, 50 + 220 * index, 50, { managed: false }));
        const type = `_NET_WM_WINDOW_TYPE_${kind}`;
        await setProperty(await painter.id(kind), '_NET_WM_WINDOW_TYPE', '32a', type);
      }
      await painter.window('popup', window('Popup', 50, 300, { managed: false }));
      for (const [index, kind] of ['DIALOG', 'UTILITY', 'NORMAL'].entries()) {
        await painter.window(kind, window(kind, 300 + 220 * index, 300));
        const type = `_NET_WM_WINDOW_TYPE_${kind}`;
        await setProperty(await painter.id(kind), '_NET_WM_WINDOW_TYPE', '32a', type);
      }
      assert.deepEqual((await windowIds()).sort(), ['DIALOG', 'NORMAL', 'UTILITY']);
    });

    test('an invisible window is not listed, a translucent one is', async (t) => {
      const { painter, setProperty, windowIds } = await startApplications(t, { manager });
      await painter.window('clear', window('Clear', 100, 100));
      await painter.window('half', window('Half', 400, 100));
      const opacity = (id, value) => setProperty(id, '_NET_WM_WINDOW_OPACITY', '32c', value);
      await opacity(await painter.id('clear'), '0');
      await opacity(await painter.id('half'), '2147483647');
      assert.deepEqual(await windowIds(), ['Half']);
    });

    test('a window without a class and without an entry is not listed', async (t) => {
      const { painter, startPainter, windowIds } = await startApplications(t, { manager });
      await startPainter().window('nameless', window('-', 100, 100, { wmClass: '-' }));
      await painter.window('named', window('Named', 400, 100));
      assert.deepEqual(await windowIds(), ['Named']);
    });

    test('a shadow that a program draws around its window is no part of it', async (t) => {
      const { addon, env, painter, setProperty } = await startApplications(t, { manager });
      await painter.window('shadowed', window('Shadowed', 300, 300));
      const id = await painter.id('shadowed');
      const frame = await frameOf(env, id);
      await setProperty(id, '_GTK_FRAME_EXTENTS', '32c', '10, 20, 5, 15');
      const [record] = await addon.getWindowList();
      const { x, y, w, h } = frame;
      assert.deepEqual(placeOf(record), { x: x + 10, y: y + 5, w: w - 30, h: h - 20 });
    });

    test('positions count from the primary display, displays from the middles', async (t) => {
      const { addon, env, painter } = await startApplications(t, { manager });
      await setMonitors(env, {
        primary: { x: 640, y: 100, width: 640, height: 700 },
        left: { x: 0, y: 0, width: 640, height: 800 },
      });
      await painter.window('straddler', window('Straddler', 500, 300));
      await painter.window('other', window('Other', 800, 300));
      const displays = await addon.listDisplays();
      const idOf = (name) => displays.find((display) => display.name === name).id;
      const frame = await frameOf(env, await painter.id('straddler'));
      const [other, straddler] = await addon.getWindowList();
      assert.deepEqual(placeOf(straddler), { ...frame, x: frame.x - 640, y: frame.y - 100 });
      assert.equal(straddler.displayId, idOf('left'));
      assert.equal(other.displayId, idOf('primary'));
    });

    test('windows that open, change and close meanwhile do no harm', async (t) => {
      const { addon, painter, startPainter, windowIds } = await startApplications(t, { manager });
      await painter.window('rock', window('Rock', 900, 600));
      const storm = startPainter();
      await storm.storm(7, window('Storm', 100, 100, { width: 400, height: 300 }));
      for (let count = 0; count < 150; ++count) {
        const windows = await addon.getWindowList();
        const bundleIds = new Set(windows.map(({ bundleId }) => bundleId));
        assert.ok(bundleIds.has('Rock'), `call ${count} lists the window that stays`);
        bundleIds.delete('Rock');
        bundleIds.delete('Storm');
        assert.deepEqual([...bundleIds], []);
      }
      assert.ok((await storm.calm()) > 10, 'there was a storm');
      await until(async () => (await windowIds()).join() === 'Rock', 'the storm is over');
    });
  });
}

describe('getWindowList', () => {
  test('bounds are those of the frame that the window manager draws', async (t) => {
    const { addon, env, painter } = await startApplications(t, { manager: true });
    await painter.window('framed', window('Framed', 300, 200));
    const frame = await frameOf(env, await painter.id('framed'));
    assert.ok(frame.h > 160, 'there is a title bar');
    const [record] = await addon.getWindowList();
    assert.deepEqual(placeOf(record), frame);
  });

  test('without a window manager the border counts', async (t) => {
    const { addon, painter } = await startApplications(t);
    const border = { width: 7, colour: '#00c000' };
    await painter.window('bordered', window('Bordered', 300, 200, { border }));
    const [record] = await addon.getWindowList();
    assert.deepEqual(placeOf(record), { x: 300, y: 200, w: 214, h: 164 });
  });

  test('a minimized window is not listed until it is back', async (t) => {
    const { painter, windowIds } = await startApplications(t, { manager: true });
    await painter.window('one', window('One', 100, 100));
    await painter.window('two', window('Two', 400, 100));
    await painter.iconify('one');
    await until(async () => (await windowIds()).join() === 'Two', 'the window is gone');
    await painter.show('one');
    await until(async () => (await windowIds()).length === 2, 'the window is back');
  });

  test('a window that moves or gets another class is found as it is now', async (t) => {
    const { addon, painter, setProperty, windowIds } = await startApplications(t, {
      entries: { another: { Name: 'Another', Exec: 'true' } },
    });
    await painter.window('one', window('One', 100, 100));
    await addon.getWindowList();
    await painter.move('one', 333, 222);
    const [{ x, y }] = await addon.getWindowList();
    assert.deepEqual([x, y], [333, 222]);
    assert.deepEqual(await windowIds(), ['One']);
    await setProperty(await painter.id('one'), 'WM_CLASS', '8s', 'another');
    assert.deepEqual(await windowIds(), ['another']);
    await painter.destroy('one');
    assert.deepEqual(await addon.getWindowList(), []);
  });

  test('the number of round trips does not depend on the number of windows', async (t) => {
    const scene = await startApplications(t);
    const proxy = await startXProxy(t, scene.server);
    const { addon } = scene.startHost({ DISPLAY: proxy.display });
    const roundTrips = async (count) => {
      for (let more = (await scene.windowIds()).length; more < count; ++more) {
        await scene.painter.window(`w${more}`, window('Many', 10 * more, 5 * more));
      }
      assert.equal((await addon.getWindowList()).length, count);
      await proxy.passOn();
      assert.equal((await addon.getWindowList()).length, count);
      return proxy.turns();
    };
    const few = await roundTrips(2);
    assert.ok(few > 0 && few <= 3, `${few} round trips`);
    assert.equal(await roundTrips(50), few);
  });

  test('without a server, and with arguments, it is a list all the same', async (t) => {
    const { addon } = startHost(t, NOWHERE);
    assert.deepEqual(await addon.getWindowList('x', 1), []);
  });
});
