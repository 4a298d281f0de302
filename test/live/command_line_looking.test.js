'use strict';

// The command line looks at a desktop: displays, windows, applications, pictures, and what works.
const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { describe, test } = require('node:test');
const sharp = require('sharp');
const { startApplications } = require('../support/applications.js');
const { commandLine, runCommand } = require('../support/command_line.js');
const { startDesktop } = require('../support/desktop.js');
const { setMonitors } = require('../support/monitors.js');
const { temporaryFolder } = require('../support/painter.js');
const { assertColour, decode } = require('../support/picture.js');
const { startXServer } = require('../support/x_server.js');

const RED = '#c00000';
const BLUE = '#0000c0';

const MONITORS = {
  main: { x: 400, y: 100, width: 800, height: 600 },
  left: { x: 0, y: 0, width: 400, height: 300 },
};

function window(name, x, y, more = {}) {
  return { x, y, width: 200, height: 150, colour: RED, wmClass: `${name}/${name}`, ...more };
}

/** Where in each line this text begins. */
const columnsOf = (output, words) =>
  output.split('\n').map((line, at) => line.indexOf(words[at] ?? ''));

describe('deskhand displays', () => {
  test('lists what the addon does, as JSON and in columns', async (t) => {
    const { addon, env } = await startDesktop(t);
    await setMonitors(env, MONITORS);
    const { json, run } = commandLine(t, env);
    const displays = await addon.listDisplays();
    assert.equal(displays.length, 2);
    assert.deepEqual(await json('displays'), displays);
    const output = await run('displays');
    const [heading, main, left, end] = output.split('\n');
    assert.match(heading, /^ +ID  SIZE +ORIGIN +SCALE  MAIN  NAME$/);
    assert.match(main, new RegExp(`${displays[0].id}  800x600  0,0 +1  main  main$`));
    assert.match(left, new RegExp(`${displays[1].id}  400x300  -400,-100 +1 +left$`));
    assert.equal(end, '');
    const [first, ...others] = columnsOf(output, ['SIZE', '800x600', '400x300']);
    assert.deepEqual(others.slice(0, 2), [first, first], 'columns are aligned');
  });
});

describe('deskhand windows', () => {
  test('lists what the addon does, front to back', async (t) => {
    const { addon, env, painter } = await startDesktop(t);
    const { json, run } = commandLine(t, env);
    assert.deepEqual(await json('windows'), []);
    assert.match(await run('windows'), /no window/);
    await painter.window('behind', window('Behind', 100, 100));
    await painter.window('before', window('Before', 150, -20));
    const windows = await addon.getWindowList();
    assert.deepEqual(
      windows.map(({ bundleId }) => bundleId),
      ['Before', 'Behind'],
    );
    assert.deepEqual(await json('windows'), windows);
    const [heading, before, behind] = (await run('windows')).split('\n');
    assert.match(heading, /^ *X +Y +WIDTH +HEIGHT +DISPLAY +PID +BUNDLE ID$/);
    assert.match(before, /^150 +-20 +200 +150 +\d+ +\d+ +Before$/);
    assert.match(behind, /^100 +100 +200 +150 +\d+ +\d+ +Behind$/);
  });

  test('a name that would steer a terminal is shown without its controls', async (t) => {
    const { env, painter } = await startDesktop(t);
    await painter.window('odd', window('Odd\x1b[31m', 100, 100));
    const output = await commandLine(t, env).run('windows');
    assert.match(output, /Odd\ufffd\[31m/);
    assert.ok(!output.includes('\x1b'));
  });
});

describe('deskhand apps', () => {
  test('lists what runs, and marks what is in front', async (t) => {
    const { addon, env, painter, folders, isFrontmost } = await startApplications(t, {
      manager: true,
      entries: { one: { Name: 'The First', Exec: 'true' } },
    });
    const { json, run } = commandLine(t, { ...env, ...folders.variables });
    await painter.window('one', window('one', 100, 100));
    const [app] = await addon.listRunningApps();
    assert.deepEqual(app, { bundleId: 'one', displayName: 'The First', pid: app.pid });
    await isFrontmost('one');
    assert.deepEqual(await json('apps'), [{ ...app, isFrontmost: true }]);
    const [, line] = (await run('apps')).split('\n');
    assert.match(line, new RegExp(`^one +${app.pid} +front +The First$`));
  });

  test('lists what is installed, without any server', async (t) => {
    const { addon, env, folders } = await startApplications(t, {
      entries: { one: { Name: 'The First', Exec: 'true' }, two: { Name: 'Second', Exec: 'true' } },
    });
    const { json, run } = commandLine(t, { ...env, ...folders.variables, DISPLAY: ':59999' });
    const installed = await json('apps', '--installed');
    assert.deepEqual(installed, await addon.listInstalledApps());
    assert.deepEqual(
      installed.map(({ bundleId }) => bundleId),
      ['one', 'two'],
    );
    assert.match(await run('apps', '--installed'), /^one +\/.*one\.desktop +The First$/m);
  });
});

describe('deskhand screenshot', () => {
  async function startScene(t) {
    const desktop = await startDesktop(t, { screen: '1600x1000x24' });
    await setMonitors(desktop.env, {
      main: { x: 600, y: 0, width: 1000, height: 1000 },
      left: { x: 0, y: 0, width: 600, height: 400 },
    });
    await desktop.painter.window('red', window('Red', 700, 100));
    await desktop.painter.window('blue', window('Blue', 50, 50, { colour: BLUE }));
    const folder = temporaryFolder(t);
    const file = path.join(folder, 'out.jpg');
    const { json, run } = commandLine(t, desktop.env);
    return {
      ...{ ...desktop, file, run },
      /** The picture that the command writes, and what it says of it. */
      async shoot(...options) {
        const said = await json('screenshot', ...options, file);
        const bytes = fs.readFileSync(file);
        assert.equal(said.bytes, bytes.length);
        const picture = await decode(bytes.toString('base64'));
        assert.deepEqual([picture.width, picture.height], [said.width, said.height]);
        return { said, picture };
      },
    };
  }

  test('shows the main display, or the one that is named', async (t) => {
    const { addon, file, run, shoot } = await startScene(t);
    const [main, left] = await addon.listDisplays();
    const whole = await shoot();
    const { milliseconds, bytes, ...said } = whole.said;
    assert.ok(milliseconds > 0 && bytes > 0);
    const area = { x: 0, y: 0, w: 1000, h: 1000 };
    assert.deepEqual(said, { file, width: 1000, height: 1000, displayId: main.id, area });
    assertColour(whole.picture, 200, 200, RED);
    const other = await shoot('--display', String(left.id));
    assert.deepEqual(other.said.area, { x: -600, y: 0, w: 600, h: 400 });
    assertColour(other.picture, 100, 100, BLUE);
    assert.match(
      await run('screenshot', file),
      /out\.jpg: 1000 x 1000 pixels, \d+ bytes; shows 1000 x 1000 points at 0,0/,
    );
  });

  test('shows a region of it, in a size of choice', async (t) => {
    const { addon, shoot } = await startScene(t);
    const [, left] = await addon.listDisplays();
    const options = ['--display', left.id, '--region', '50,50,200,150'].map(String);
    const plain = await shoot(...options);
    assert.deepEqual(plain.said.area, { x: -550, y: 50, w: 200, h: 150 });
    assert.deepEqual([plain.said.width, plain.said.height], [200, 150]);
    for (const [x, y] of [
      [2, 2],
      [197, 147],
    ])
      assertColour(plain.picture, x, y, BLUE);
    const large = await shoot(...options, '--size', '400x300');
    assert.deepEqual([large.said.width, large.said.height], [400, 300]);
    const beyond = await shoot('--region', '-10,-10,20,20');
    assert.deepEqual(beyond.said.area, { x: -10, y: -10, w: 20, h: 20 });
    const small = await shoot('--size', '250x250');
    assert.deepEqual([small.said.width, small.said.height], [250, 250]);
    assertColour(small.picture, 50, 44, RED);
  });

  test('leaves applications out, and heeds the quality', async (t) => {
    const { painter, shoot } = await startScene(t);
    await painter.window('behind', window('Behind', 700, 100, { colour: '#00c000' }));
    await painter.raise('red');
    assertColour((await shoot()).picture, 200, 200, RED);
    assertColour((await shoot('--exclude', 'Red')).picture, 200, 200, '#00c000');
    const without = await shoot('--exclude', 'Red', '--exclude', 'Behind');
    assertColour(without.picture, 200, 200, '#000000');
    const [rough, fine] = [await shoot('--quality', '0.1'), await shoot('--quality', '1')];
    assert.ok(rough.said.bytes < fine.said.bytes);
  });

  test('goes to standard output, but not beside JSON', async (t) => {
    const { env } = await startScene(t);
    const { bytes, errors, status } = await runCommand(t, env, ['screenshot', '-']);
    assert.deepEqual([status, errors], [0, '']);
    assert.equal((await sharp(bytes).metadata()).width, 1000);
    const both = await runCommand(t, env, ['screenshot', '-', '--json']);
    assert.deepEqual([both.status, both.output], [1, '']);
    assert.match(JSON.parse(both.errors).error.message, /cannot be both/);
  });

  test('says what is wrong with a display, or a place to write to', async (t) => {
    const { addon, env, file } = await startScene(t);
    const ids = (await addon.listDisplays()).map(({ id }) => id);
    const wrong = await runCommand(t, env, ['screenshot', '--display', '7', file]);
    assert.equal(wrong.status, 1);
    assert.equal(wrong.errors.split('\n')[0], 'deskhand: there is no display 7');
    assert.ok(wrong.errors.includes(ids.join(', ')));
    assert.ok(!fs.existsSync(file));
    const nowhere = await runCommand(t, env, ['screenshot', '/nowhere/out.jpg', '--json']);
    assert.equal(nowhere.status, 1);
    const { message, hint } = JSON.parse(nowhere.errors).error;
    assert.match(message, /^ENOENT/);
    assert.equal(hint, 'Does the folder exist?');
  });
});

describe('deskhand doctor', () => {
  const namesOf = (checks, isOk) => checks.filter(({ ok }) => ok === isOk).map(({ name }) => name);

  test('finds that all works', async (t) => {
    const { addon, env } = await startDesktop(t);
    const { json, run } = commandLine(t, env);
    const report = await json('doctor');
    assert.equal(report.ok, true);
    assert.deepEqual(report.displays, await addon.listDisplays());
    assert.deepEqual(namesOf(report.checks, false), []);
    const names = ['binary', 'session', 'main display', 'screen', 'input', 'screenshot'];
    assert.deepEqual(namesOf(report.checks, true), names);
    assert.ok(report.checks.at(-1).milliseconds > 0, 'the screenshot is timed');
    assert.deepEqual(Object.keys(report.versions), ['deskhand', 'node', 'napi']);
    const output = await run('doctor', '--ask');
    assert.match(output, /^deskhand \d.* on linux-/);
    assert.match(output, /^ok +screenshot +\d+ x \d+ pixels, \d+ KiB, in \d+ ms$/m);
    assert.match(output, /\n\nAll works\.\n$/);
  });

  test('tells of a server without input', async (t) => {
    const { env } = await startXServer(t, { args: ['-extension', 'XTEST'] });
    const { status, output } = await runCommand(t, env, ['doctor', '--json']);
    assert.equal(status, 1);
    const { ok, checks } = JSON.parse(output);
    assert.equal(ok, false);
    assert.deepEqual(namesOf(checks, false), ['input']);
    assert.match(checks.find(({ name }) => name === 'input').hint, /XTEST/);
    const human = await runCommand(t, env, ['doctor']);
    assert.equal(human.status, 1);
    assert.match(human.output, /^FAIL +input .*\n +The X server has no XTEST/m);
  });
});
