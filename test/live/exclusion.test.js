'use strict';

// By which names applications are left out of the picture.
const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { describe, test } = require('node:test');
const { startDesktop } = require('../support/desktop.js');
const { assertNoSecret, secretPixels } = require('../support/left_out.js');
const { temporaryFolder } = require('../support/painter.js');
const { decode } = require('../support/picture.js');
const { startBrowser, startTerminal } = require('../support/programs.js');

const RED = '#c02020';
const GREEN = '#20a040';
const SECRET = { x: 300, y: 200, width: 200, height: 200, colour: RED, wmClass: 'secret/Secret' };

/** Both captures show nothing of it while `excluded` names it, though it is on the screen. */
async function assertLeftOut(addon, excluded, area = SECRET) {
  const { x, y, width, height } = area;
  const take = async (list) => {
    const display = await decode((await addon.captureDisplay(list, 1)).base64);
    const region = await addon.captureRegion(list, x, y, width, height, width, height, 1);
    return [display, await decode(region.base64)];
  };
  for (const picture of await take(excluded)) assertNoSecret(picture);
  for (const picture of await take([])) assert.ok(secretPixels(picture) > 0, 'it is on the screen');
}

/** The list has no effect on what is on the screen. */
async function assertShown(addon, excluded) {
  const picture = await decode((await addon.captureDisplay(excluded, 1)).base64);
  assert.ok(secretPixels(picture) > 0, 'it is in the picture');
}

/** Both captures take the picture. */
async function assertTaken(addon, excluded) {
  assert.ok((await addon.captureDisplay(excluded)).base64);
  assert.ok((await addon.captureRegion(excluded, 0, 0, 10, 10, 10, 10)).base64);
}

describe('an application with a window on the screen is left out', () => {
  for (const [surroundings, options, place] of [
    ['without a window manager', {}, {}],
    ['in the frame of a window manager', { manager: true }, {}],
    ['with a window that no manager frames', { manager: true }, { managed: false }],
  ]) {
    test(`by its class, ${surroundings}`, async (t) => {
      const { addon, painter } = await startDesktop(t, options);
      await painter.window('secret', { ...SECRET, ...place });
      await assertLeftOut(addon, ['Secret']);
    });
  }

  test('by the application identifier of GTK, if there is an entry', async (t) => {
    const { addon, painter, host } = await startDesktop(t);
    const data = temporaryFolder(t);
    const entry = path.join(data, 'applications', 'org.example.Secret.desktop');
    fs.mkdirSync(path.dirname(entry));
    fs.writeFileSync(entry, '[Desktop Entry]\nType=Application\nName=Secret\nExec=true\n');
    await host.setEnvironment({ XDG_DATA_HOME: data });
    await painter.window('secret', SECRET);
    await painter.property('secret', '_GTK_APPLICATION_ID', 'org.example.Secret');
    await assertLeftOut(addon, ['org.example.Secret']);
    await assertShown(addon, ['org.example.secret', 'Secret']);
  });

  test('by its class when there is no entry for the identifier of GTK', async (t) => {
    const { addon, painter } = await startDesktop(t);
    await painter.window('secret', SECRET);
    await painter.property('secret', '_GTK_APPLICATION_ID', 'org.example.Secret');
    await assertLeftOut(addon, ['Secret']);
    await assertShown(addon, ['org.example.Secret']);
  });

  test('wherever its name stands in the list', async (t) => {
    const { addon, painter } = await startDesktop(t);
    await painter.window('secret', SECRET);
    await assertLeftOut(addon, ['Other', 'Secret']);
    await assertLeftOut(addon, [7, 'Secret', null, 'Secret']);
  });

  test('where another covers a part of it', async (t) => {
    const { addon, painter } = await startDesktop(t);
    await painter.window('secret', SECRET);
    await painter.window('cover', { ...SECRET, x: 320, colour: GREEN, wmClass: 'cover/Cover' });
    await assertLeftOut(addon, ['Secret']);
  });

  test('inside of the window of another', async (t) => {
    const { addon, painter } = await startDesktop(t);
    const outer = { x: 100, y: 100, width: 600, height: 400, colour: GREEN };
    await painter.window('outer', { ...outer, wmClass: 'outer/Outer' });
    await painter.window('middle', { ...outer, wmClass: 'middle/Middle' });
    await painter.window('secret', SECRET);
    await painter.embed('middle', 'outer');
    await painter.embed('secret', 'middle');
    for (const name of ['Secret', 'Middle', 'Outer']) {
      await assertLeftOut(addon, [name], { x: 100, y: 100, width: 600, height: 400 });
    }
  });

  test('as soon as its window appears', async (t) => {
    const { addon, painter } = await startDesktop(t);
    await assertTaken(addon, ['Secret']);
    await painter.window('secret', SECRET);
    await assertLeftOut(addon, ['Secret']);
  });

  for (const manager of [false, true]) {
    const surroundings = manager ? 'with' : 'without';
    test(`a program by its desktop entry alone, ${surroundings} a window manager`, async (t) => {
      const desktop = await startDesktop(t, { manager });
      await startTerminal(t, desktop, {
        geometry: '60x20+100+100',
        probe: { x: 300, y: 300 },
        colour: RED,
      });
      await assertLeftOut(desktop.addon, ['debian-xterm']);
      await assertShown(desktop.addon, ['XTerm', 'xterm', 'debian-uxterm', 'openbox', 'Secret']);
    });
  }
});

describe('a browser is left out', () => {
  test('by its desktop entry alone, whatever its windows are called', async (t) => {
    const desktop = await startDesktop(t, { manager: true });
    await startBrowser(t, desktop, {
      ...{ x: 0, y: 0, width: 700, height: 500 },
      html: `<body style="background: ${RED}">`,
      colour: RED,
      probe: { x: 300, y: 300 },
    });
    await assertLeftOut(desktop.addon, ['chromium']);
    await assertShown(desktop.addon, ['Chromium', 'chrom', 'CHROMIUM']);
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
    const ends = { hidden: painter.hide, iconic: painter.iconify, gone: painter.destroy };
    for (const [name, end] of Object.entries(ends)) {
      await put(name);
      await assertLeftOut(addon, [name]);
      await end(name);
    }
    await assertTaken(addon, ['hidden', 'iconic', 'gone']);
  });

  test('that names the window manager', async (t) => {
    const { addon, painter } = await startDesktop(t, { manager: true });
    await painter.window('secret', SECRET);
    await assertTaken(addon, ['Openbox', 'openbox']);
  });
});
