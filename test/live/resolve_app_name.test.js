'use strict';

// What the user calls an application, and which one it is.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { isDeepStrictEqual } = require('node:util');
const { startApplications } = require('../support/applications.js');
const { kill, start } = require('../support/processes.js');
const { until } = require('../support/until.js');

function window(name, x, y, more = {}) {
  return { x, y, width: 200, height: 150, colour: '#c00000', wmClass: `${name}/${name}`, ...more };
}

const ENTRIES = {
  'org.test.Editor': { Name: 'Éditeur de TEXTE', Exec: 'true' },
  calculator: { Name: 'Calculator', 'Name[de]': 'Rechner', Exec: 'true' },
  agent: { Name: 'Agent', Exec: 'true', NoDisplay: 'true' },
  deleted: { Name: 'Deleted', Exec: 'true', Hidden: 'true' },
};

describe('resolveAppName', () => {
  test('a running application is found by its name in any letter case', async (t) => {
    const { addon, painter } = await startApplications(t, { entries: ENTRIES });
    await painter.window('one', window('org.test.Editor', 100, 100));
    const editor = { bundleId: 'org.test.Editor', displayName: 'Éditeur de TEXTE' };
    assert.deepEqual(await addon.resolveAppName('éDITEUR DE texte'), editor);
    assert.deepEqual(Object.keys(await addon.resolveAppName('Éditeur de TEXTE')), [
      'bundleId',
      'displayName',
    ]);
  });

  test('one without an entry is found by its class, one with popups only as well', async (t) => {
    const { addon, painter } = await startApplications(t);
    await painter.window('one', window('Plain', 100, 100));
    await painter.window('two', window('Popup', 400, 100, { managed: false }));
    const plain = { bundleId: 'Plain', displayName: 'Plain' };
    assert.deepEqual(await addon.resolveAppName('plain'), plain);
    assert.equal((await addon.resolveAppName('POPUP')).bundleId, 'Popup');
    await painter.destroy('one');
    assert.equal(await addon.resolveAppName('plain'), null);
  });

  test('one that was started from an entry is found without a window', async (t) => {
    const { addon, folders, env } = await startApplications(t, { entries: ENTRIES });
    const editor = { bundleId: 'org.test.Editor', displayName: 'Éditeur de TEXTE' };
    const found = () => addon.resolveAppName('ÉDITEUR DE TEXTE');
    assert.equal(await found(), null, 'it does not run');
    const command = 'export GIO_LAUNCHED_DESKTOP_FILE_PID=$$; exec sleep 30';
    const file = `${folders.user}/org.test.Editor.desktop`;
    const program = start(t, 'sh', ['-c', command], {
      env: { ...env, GIO_LAUNCHED_DESKTOP_FILE: file },
    });
    await until(async () => isDeepStrictEqual(await found(), editor), 'it is known to run');
    await kill(program);
    await until(async () => (await found()) === null, 'it is known to have ended');
  });

  test('one that does not run is found by its identifier, letter for letter', async (t) => {
    const { addon } = await startApplications(t, { entries: ENTRIES });
    const editor = { bundleId: 'org.test.Editor', displayName: 'Éditeur de TEXTE' };
    assert.deepEqual(await addon.resolveAppName('org.test.Editor'), editor);
    assert.equal(await addon.resolveAppName('org.test.editor'), null);
    assert.equal((await addon.resolveAppName('agent')).bundleId, 'agent');
  });

  test('one that does not run is found by its name as it is written', async (t) => {
    const scene = await startApplications(t, { entries: ENTRIES });
    const german = scene.startHost({ LANGUAGE: 'de' });
    assert.equal((await scene.addon.resolveAppName('Calculator')).bundleId, 'calculator');
    assert.deepEqual(await german.addon.resolveAppName('Rechner'), {
      bundleId: 'calculator',
      displayName: 'Rechner',
    });
    assert.equal((await german.addon.resolveAppName('Calculator')).displayName, 'Rechner');
    assert.equal(await scene.addon.resolveAppName('CALCULATOR'), null);
    assert.equal(await scene.addon.resolveAppName('calculator.desktop'), null);
  });

  test('the user\'s folder comes before the system\'s', async (t) => {
    const { addon, folders } = await startApplications(t);
    folders.put('system', 'theirs', { Name: 'Viewer', Exec: 'true' });
    assert.equal((await addon.resolveAppName('Viewer')).bundleId, 'theirs');
    folders.put('user', 'mine', { Name: 'Viewer', Exec: 'true' });
    assert.equal((await addon.resolveAppName('Viewer')).bundleId, 'mine');
  });

  test('what is deleted, unknown, empty or no text is null', async (t) => {
    const { addon } = await startApplications(t, { entries: ENTRIES });
    for (const name of ['deleted', 'Deleted', 'nobody', '', '../calculator', 'a/b', 42, null]) {
      assert.equal(await addon.resolveAppName(name), null, String(name));
    }
    assert.equal(await addon.resolveAppName(), null);
  });
});
