'use strict';

// Which applications are installed.
const assert = require('node:assert/strict');
const fs = require('node:fs');
const { describe, test } = require('node:test');
const { makeEntryFolders } = require('../support/applications.js');
const { NOWHERE, startHost } = require('../support/host.js');

/** A host that needs no server for this, and folders of its own. */
function startInstalled(t, more = {}) {
  const folders = makeEntryFolders(t);
  const host = startHost(t, { ...NOWHERE, ...folders.variables, ...more });
  const list = () => host.addon.listInstalledApps();
  return { folders, list, ids: async () => (await list()).map(({ bundleId }) => bundleId) };
}

describe('listInstalledApps', () => {
  test('lists entries, those of the user first, with names and files', async (t) => {
    const { folders, list } = startInstalled(t);
    const mail = folders.put('system', 'mail', { Name: 'Mail', Exec: 'true %U' });
    const editor = folders.put('user', 'editor', { Name: 'Text Editor', Exec: 'true' });
    const records = await list();
    assert.deepEqual(records, [
      { bundleId: 'editor', displayName: 'Text Editor', path: editor },
      { bundleId: 'mail', displayName: 'Mail', path: mail },
    ]);
    assert.deepEqual(Object.keys(records[0]), ['bundleId', 'displayName', 'path']);
  });

  test('nothing installed is an empty list', async (t) => {
    assert.deepEqual(await startInstalled(t).list(), []);
  });

  test('two copies are two records with one identifier', async (t) => {
    const { folders, list } = startInstalled(t);
    const own = folders.put('user', 'editor', { Name: 'Mine', Exec: 'true' });
    const common = folders.put('system', 'editor', { Name: 'Theirs', Exec: 'true' });
    assert.deepEqual(await list(), [
      { bundleId: 'editor', displayName: 'Mine', path: own },
      { bundleId: 'editor', displayName: 'Theirs', path: common },
    ]);
  });

  test('what no menu shows is left out', async (t) => {
    const { folders, ids } = startInstalled(t);
    const exec = { Name: 'Name', Exec: 'true' };
    folders.put('user', 'agent', { ...exec, NoDisplay: 'true' });
    folders.put('user', 'deleted', { ...exec, Hidden: 'true' });
    folders.put('user', 'foreign', { ...exec, OnlyShowIn: 'Elsewhere;' });
    folders.put('user', 'here', { ...exec, OnlyShowIn: 'Private;' });
    folders.put('user', 'plain', { ...exec, NoDisplay: 'false', Hidden: 'false' });
    assert.deepEqual(await ids(), ['here', 'plain']);
  });

  test('what the user has deleted is left out, wherever it is installed', async (t) => {
    const { folders, ids } = startInstalled(t);
    folders.put('user', 'deleted', { Name: 'Name', Exec: 'true', Hidden: 'true' });
    folders.put('system', 'deleted', { Name: 'Name', Exec: 'true' });
    folders.put('system', 'kept', { Name: 'Name', Exec: 'true' });
    assert.deepEqual(await ids(), ['kept']);
  });

  test('what is no application, or lacks its program, is left out', async (t) => {
    const { folders, ids } = startInstalled(t);
    folders.put('user', 'link', { Type: 'Link', Name: 'Link', URL: 'file:///' });
    folders.put('user', 'tried', { Name: 'Tried', Exec: 'true', TryExec: '/nowhere/at-all' });
    folders.put('user', 'missing', { Name: 'Missing', Exec: '/nowhere/at-all' });
    folders.put('user', 'found', { Name: 'Found', Exec: 'true', TryExec: 'true' });
    fs.writeFileSync(`${folders.user}/broken.desktop`, 'not an entry');
    fs.writeFileSync(`${folders.user}/other.txt`, '[Desktop Entry]');
    assert.deepEqual(await ids(), ['found']);
  });

  test('entries in folders inside have the names of the folders before theirs', async (t) => {
    const { folders, ids } = startInstalled(t);
    folders.put('system', 'kde/view', { Name: 'View', Exec: 'true' });
    assert.deepEqual(await ids(), ['kde-view']);
  });

  test('names are in the language of the user', async (t) => {
    const { folders, list } = startInstalled(t, { LANGUAGE: 'de' });
    folders.put('user', 'a', { Name: 'Files', 'Name[de]': 'Dateien Ü', Exec: 'true' });
    assert.deepEqual((await list()).map(({ displayName }) => displayName), ['Dateien Ü']);
  });

  test('what is installed, changed or removed shows in the next call', async (t) => {
    const { folders, list } = startInstalled(t);
    const program = folders.script('program', 'true');
    const names = async () => (await list()).map(({ displayName }) => displayName);
    const file = folders.put('user', 'a', { Name: 'First', Exec: program });
    assert.deepEqual(await names(), ['First']);
    folders.put('user', 'a', { Name: 'Renamed', Exec: program });
    folders.put('user', 'b', { Name: 'Second', Exec: 'true' });
    assert.deepEqual(await names(), ['Renamed', 'Second']);
    fs.rmSync(program);
    assert.deepEqual(await names(), ['Second']);
    fs.rmSync(file);
    assert.deepEqual(await names(), ['Second']);
  });
});
