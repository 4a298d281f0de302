'use strict';

// Applications to leave out: while that cannot be done, no picture shows them.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startDesktop } = require('../support/desktop.js');
const { assertColour, decode } = require('../support/picture.js');
const { startBrowser, startTerminal } = require('../support/programs.js');

const RED = '#c02020';
const GREEN = '#20a040';
const SECRET = { x: 300, y: 200, width: 200, height: 200, colour: RED, wmClass: 'secret/Secret' };

/** Both captures refuse the list, and name the application that cannot be left out. */
async function assertRefused(addon, excluded, application) {
  const reason = (subject) => ({
    outcome: 'rejected',
    name: 'Error',
    message: `${subject} capture failed: '${application}' is on the screen and cannot be left out \
of the picture`,
  });
  await assert.rejects(addon.captureDisplay(excluded), reason('Screenshot'));
  await assert.rejects(addon.captureRegion(excluded, 0, 0, 10, 10, 10, 10), reason('Region'));
}

/** Both captures take the picture. */
async function assertTaken(addon, excluded) {
  assert.ok((await addon.captureDisplay(excluded)).base64);
  assert.ok((await addon.captureRegion(excluded, 0, 0, 10, 10, 10, 10)).base64);
}

describe('an application with a window on the screen is refused', () => {
  for (const [surroundings, options, place] of [
    ['without a window manager', {}, {}],
    ['in the frame of a window manager', { manager: true }, {}],
    ['with a window that no manager frames', { manager: true }, { managed: false }],
  ]) {
    test(`by its class, ${surroundings}`, async (t) => {
      const { addon, painter } = await startDesktop(t, options);
      await painter.window('secret', { ...SECRET, ...place });
      await assertRefused(addon, ['Secret'], 'Secret');
      const picture = await decode((await addon.captureDisplay([])).base64);
      assertColour(picture, 420, 320, RED);
    });
  }

  test('by the application identifier that GTK gives its windows', async (t) => {
    const { addon, painter } = await startDesktop(t);
    await painter.window('secret', SECRET);
    await painter.property('secret', '_GTK_APPLICATION_ID', 'org.example.Secret');
    await assertRefused(addon, ['org.example.Secret'], 'org.example.Secret');
    await assertTaken(addon, ['org.example.secret']);
  });

  test('wherever its name stands in the list', async (t) => {
    const { addon, painter } = await startDesktop(t);
    await painter.window('secret', SECRET);
    await assertRefused(addon, ['Other', 'Secret'], 'Secret');
    await assertRefused(addon, [7, 'Secret', null, 'Secret'], 'Secret');
  });

  test('even where it is covered by another', async (t) => {
    const { addon, painter } = await startDesktop(t);
    await painter.window('secret', SECRET);
    await painter.window('cover', { ...SECRET, colour: GREEN, wmClass: 'cover/Cover' });
    await assertRefused(addon, ['Secret'], 'Secret');
  });

  test('inside of the window of another', async (t) => {
    const { addon, painter } = await startDesktop(t);
    const outer = { x: 100, y: 100, width: 600, height: 400, colour: GREEN };
    await painter.window('outer', { ...outer, wmClass: 'outer/Outer' });
    await painter.window('middle', { ...outer, wmClass: 'middle/Middle' });
    await painter.window('secret', SECRET);
    await painter.embed('middle', 'outer');
    await painter.embed('secret', 'middle');
    await assertRefused(addon, ['Secret'], 'Secret');
    await assertRefused(addon, ['Middle'], 'Middle');
    await assertRefused(addon, ['Outer'], 'Outer');
  });

  test('as soon as its window appears', async (t) => {
    const { addon, painter } = await startDesktop(t);
    await assertTaken(addon, ['Secret']);
    await painter.window('secret', SECRET);
    await assertRefused(addon, ['Secret'], 'Secret');
  });

  for (const manager of [false, true]) {
    const surroundings = manager ? 'with' : 'without';
    test(`a program by class or desktop entry, ${surroundings} a window manager`, async (t) => {
      const desktop = await startDesktop(t, { manager });
      await startTerminal(t, desktop, {
        geometry: '60x20+100+100',
        probe: { x: 300, y: 300 },
        colour: GREEN,
      });
      await assertRefused(desktop.addon, ['XTerm'], 'XTerm');
      await assertRefused(desktop.addon, ['debian-xterm'], 'debian-xterm');
      await assertTaken(desktop.addon, ['debian-uxterm-of-nobody', 'openbox', 'Secret']);
    });
  }
});

describe('a browser is refused', () => {
  test('by class or desktop entry, whatever its windows are called', async (t) => {
    const desktop = await startDesktop(t, { manager: true });
    await startBrowser(t, desktop, {
      ...{ x: 0, y: 0, width: 700, height: 500 },
      html: `<body style="background: ${GREEN}">`,
      colour: GREEN,
      probe: { x: 300, y: 300 },
    });
    await assertRefused(desktop.addon, ['Chromium'], 'Chromium');
    await assertRefused(desktop.addon, ['chromium'], 'chromium');
    await assertTaken(desktop.addon, ['chrom', 'CHROMIUM']);
  });
});

describe('nothing stands against a list', () => {
  for (const [description, excluded] of [
    ['that is empty', []],
    ['of applications that do not run', ['com.example.none', 'Other']],
    ['with a name in the wrong case', ['secret-APP', 'SECRET']],
    ['with a part of a name', ['Secre', 'Secrets', '*']],
    ['with an empty name', ['']],
    ['of what are no strings', [1, null, undefined, {}, ['Secret'], true, NaN]],
    ['with holes', new Array(5)],
  ]) {
    test(description, async (t) => {
      const { addon, painter } = await startDesktop(t);
      await painter.window('secret', SECRET);
      await assertTaken(addon, excluded);
    });
  }

  test('that names an application whose window is hidden, iconified or gone', async (t) => {
    const { addon, painter } = await startDesktop(t, { manager: true });
    const put = (name) => painter.window(name, { ...SECRET, wmClass: `${name}/${name}` });
    for (const name of ['hidden', 'iconic', 'gone']) {
      await put(name);
      await assertRefused(addon, [name], name);
    }
    await painter.hide('hidden');
    await painter.iconify('iconic');
    await painter.destroy('gone');
    await assertTaken(addon, ['hidden', 'iconic', 'gone']);
  });

  test('that names the window manager', async (t) => {
    const { addon, painter } = await startDesktop(t, { manager: true });
    await painter.window('secret', SECRET);
    await assertTaken(addon, ['Openbox', 'openbox']);
  });
});
