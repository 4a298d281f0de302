'use strict';

// Which application a click at a point would reach.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startApplications } = require('../support/applications.js');
const { NOWHERE, startHost } = require('../support/host.js');
const { setMonitors } = require('../support/monitors.js');
const { startTerminal } = require('../support/programs.js');

function window(name, x, y, more = {}) {
  return { x, y, width: 200, height: 150, colour: '#c00000', wmClass: `${name}/${name}`, ...more };
}

async function idAt({ addon }, x, y) {
  return (await addon.appUnderPoint(x, y))?.bundleId;
}

describe('appUnderPoint', () => {
  test('tells the application of the window in front, frame included', async (t) => {
    const scene = await startApplications(t, {
      manager: true,
      entries: { terminal: { Name: 'My Terminal', Exec: 'xterm' } },
    });
    await scene.painter.window('behind', window('Behind', 50, 100, { width: 500 }));
    await startTerminal(t, scene, { geometry: '20x6+100+130', probe: { x: 150, y: 200 } });
    const [terminal] = await scene.addon.getWindowList();
    const record = await scene.addon.appUnderPoint(terminal.x + 40, terminal.y + 5);
    const { pid } = terminal;
    assert.deepEqual(record, { bundleId: 'terminal', displayName: 'My Terminal', pid });
    assert.deepEqual(Object.keys(record), ['bundleId', 'displayName', 'pid']);
    assert.equal(await idAt(scene, 60, 110), 'Behind');
    assert.equal(await idAt(scene, 900, 700), undefined);
  });

  test('the left and top edges are inside, the right and bottom ones are not', async (t) => {
    const scene = await startApplications(t);
    await scene.painter.window('edges', window('Edges', 100, 100));
    assert.equal(await idAt(scene, 100, 100), 'Edges');
    assert.equal(await idAt(scene, 299.5, 249.5), 'Edges');
    assert.equal(await idAt(scene, 300, 150), undefined);
    assert.equal(await idAt(scene, 150, 250), undefined);
    assert.equal(await idAt(scene, 99.5, 150), undefined);
  });

  test('popups and docks in front are passed over', async (t) => {
    const scene = await startApplications(t);
    await scene.painter.window('below', window('Below', 100, 100));
    await scene.painter.window('popup', window('Popup', 100, 100, { managed: false }));
    await scene.painter.window('dock', window('Dock', 100, 100));
    const dock = await scene.painter.id('dock');
    const type = '_NET_WM_WINDOW_TYPE';
    await scene.setProperty(dock, type, '32a', `${type}_DOCK`);
    assert.equal(await idAt(scene, 150, 150), 'Below');
  });

  test('a transparent window in front is passed over', async (t) => {
    const scene = await startApplications(t);
    await scene.painter.window('below', window('Below', 100, 100));
    await scene.painter.window('glass', window('Glass', 100, 100));
    const glass = await scene.painter.id('glass');
    await scene.setProperty(glass, '_NET_WM_WINDOW_OPACITY', '32c', '0');
    assert.equal(await idAt(scene, 150, 150), 'Below');
  });

  test('points count from the primary display', async (t) => {
    const scene = await startApplications(t);
    await setMonitors(scene.env, {
      primary: { x: 640, y: 100, width: 640, height: 700 },
      left: { x: 0, y: 0, width: 640, height: 800 },
    });
    await scene.painter.window('left', window('Left', 100, 120));
    await scene.painter.window('right', window('Right', 700, 120));
    assert.equal(await idAt(scene, -500, 50), 'Left');
    assert.equal(await idAt(scene, 100, 50), 'Right');
    assert.equal(await idAt(scene, 100, 300), undefined);
  });

  test('with other arguments, or without a server, it is null', async (t) => {
    const { addon } = await startApplications(t);
    assert.equal(await addon.appUnderPoint(10), null);
    assert.equal(await addon.appUnderPoint('10', '20'), null);
    assert.equal(await startHost(t, NOWHERE).addon.appUnderPoint(10, 20), null);
  });
});
