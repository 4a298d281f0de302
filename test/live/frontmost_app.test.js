'use strict';

// Which application gets what the user types.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startApplications } = require('../support/applications.js');
const { NOWHERE, startHost } = require('../support/host.js');
const { startDialog } = require('../support/programs.js');

function window(name, x, y, more = {}) {
  return { x, y, width: 200, height: 150, colour: '#c00000', wmClass: `${name}/${name}`, ...more };
}

describe('getFrontmostApp', () => {
  test('is the application of the active window, with a window manager', async (t) => {
    const scene = await startApplications(t, {
      manager: true,
      entries: { dialogs: { Name: 'Dialogs', Exec: 'zenity' } },
    });
    assert.equal(await scene.addon.getFrontmostApp(), null);
    await scene.painter.window('one', window('One', 100, 100));
    await scene.isFrontmost('One');
    await startDialog(t, scene, { width: 300, height: 200, text: 'text' });
    await scene.isFrontmost('dialogs');
    const record = await scene.addon.getFrontmostApp();
    assert.deepEqual(Object.keys(record), ['bundleId', 'displayName', 'pid']);
    assert.equal(record.displayName, 'Dialogs');
    process.kill(record.pid, 0);
    await scene.painter.destroy('one');
    await scene.isFrontmost('dialogs');
  });

  test('is that of the keyboard focus without a window manager', async (t) => {
    const scene = await startApplications(t);
    await scene.painter.window('one', window('One', 100, 100));
    await scene.painter.window('two', window('Two', 400, 100));
    await scene.painter.focus('one');
    await scene.isFrontmost('One');
    await scene.painter.focus('two');
    await scene.isFrontmost('Two');
    await scene.painter.destroy('two');
    assert.equal(await scene.addon.getFrontmostApp(), null);
  });

  test('is also one that has no place in menus', async (t) => {
    const scene = await startApplications(t, {
      entries: { unseen: { Name: 'Unseen', Exec: 'true', NoDisplay: 'true' } },
    });
    await scene.painter.window('one', window('unseen', 100, 100));
    await scene.painter.focus('one');
    await scene.isFrontmost('unseen');
    assert.deepEqual(await scene.runningIds(), []);
  });

  test('is null when the active window names no application', async (t) => {
    const scene = await startApplications(t);
    await scene.painter.window('nameless', window('-', 100, 100, { wmClass: '-' }));
    await scene.painter.focus('nameless');
    assert.equal(await scene.addon.getFrontmostApp(), null);
  });

  test('is null without a server', async (t) => {
    assert.equal(await startHost(t, NOWHERE).addon.getFrontmostApp(), null);
  });
});
