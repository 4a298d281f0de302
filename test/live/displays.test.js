'use strict';

// Which displays there are, on servers with one monitor and with several.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startDesktop } = require('../support/desktop.js');
const { NOWHERE, startHost } = require('../support/host.js');
const { deleteMonitor, setMonitor, setMonitors } = require('../support/monitors.js');
const { until } = require('../support/until.js');

const RECORD_KEYS = [
  'id',
  'width',
  'height',
  'isMain',
  'originX',
  'originY',
  'scaleFactor',
  'name',
];

const LEFT_HALF = { x: 0, y: 0, width: 640, height: 800 };
const RIGHT_HALF = { x: 640, y: 0, width: 640, height: 800 };

function named(displays, name) {
  const display = displays.find((candidate) => candidate.name === name);
  assert.ok(display, `no display is called ${name}`);
  return display;
}

describe('listDisplays', () => {
  test('one server without further ado is one display, with the documented record', async (t) => {
    const { addon } = await startDesktop(t, { screen: '1280x800x24' });
    const displays = await addon.listDisplays();
    assert.equal(displays.length, 1);
    const [{ id, ...rest }] = displays;
    assert.deepEqual(rest, {
      width: 1280,
      height: 800,
      isMain: true,
      originX: 0,
      originY: 0,
      scaleFactor: 1,
      name: 'screen',
    });
    assert.deepEqual(Object.keys(displays[0]), RECORD_KEYS);
    assert.ok(Number.isInteger(id) && id > 0 && id < 2 ** 32, `${id} is an identifier`);
  });

  test('each monitor is a display, the primary one first', async (t) => {
    const { addon, env } = await startDesktop(t);
    await setMonitor(env, 'plain', { ...LEFT_HALF, output: 'screen' });
    await setMonitor(env, 'chosen', { ...RIGHT_HALF, primary: true });
    const displays = await addon.listDisplays();
    assert.deepEqual(
      displays.map(({ name, isMain }) => [name, isMain]),
      [
        ['chosen', true],
        ['plain', false],
      ],
    );
    for (const display of displays) assert.deepEqual(Object.keys(display), RECORD_KEYS);
  });

  test('without a primary monitor the first of the server comes first', async (t) => {
    const { addon, env } = await startDesktop(t);
    await setMonitor(env, 'one', { ...LEFT_HALF, output: 'screen' });
    await setMonitor(env, 'two', RIGHT_HALF);
    const displays = await addon.listDisplays();
    assert.deepEqual(
      displays.map(({ name, isMain }) => [name, isMain]),
      [
        ['one', true],
        ['two', false],
      ],
    );
  });

  test('origins are counted from the top left of the primary display', async (t) => {
    const { addon, env } = await startDesktop(t, { screen: '1200x900x24' });
    await setMonitors(env, {
      middle: { x: 400, y: 300, width: 400, height: 300 },
      left: { x: 0, y: 350, width: 400, height: 200 },
      above: { x: 400, y: 0, width: 400, height: 300 },
      lower: { x: 800, y: 620, width: 400, height: 280 },
    });
    const displays = await addon.listDisplays();
    const geometry = Object.fromEntries(
      displays.map((d) => [d.name, [d.originX, d.originY, d.width, d.height]]),
    );
    assert.deepEqual(geometry, {
      middle: [0, 0, 400, 300],
      left: [-400, 50, 400, 200],
      above: [0, -300, 400, 300],
      lower: [400, 320, 400, 280],
    });
    assert.deepEqual(
      displays.filter((display) => display.isMain).map((display) => display.name),
      ['middle'],
    );
  });

  test('identifiers are distinct and non-zero unsigned 32-bit numbers', async (t) => {
    const { addon, env } = await startDesktop(t);
    const strips = Array.from({ length: 16 }, (_, index) => [
      `strip-${index}`,
      { x: index * 80, y: 0, width: 80, height: 800 },
    ]);
    await setMonitors(env, Object.fromEntries(strips));
    const ids = (await addon.listDisplays()).map((display) => display.id);
    assert.equal(ids.length, 16);
    assert.equal(new Set(ids).size, 16);
    for (const id of ids) assert.ok(Number.isInteger(id) && id > 0 && id < 2 ** 32);
  });

  test('identifiers stay with their monitors, whatever happens to others', async (t) => {
    const { addon, env } = await startDesktop(t);
    await setMonitors(env, { kept: LEFT_HALF, other: RIGHT_HALF });
    const { id } = named(await addon.listDisplays(), 'kept');
    assert.equal(named(await addon.listDisplays(), 'kept').id, id, 'in the next call');
    await deleteMonitor(env, 'other');
    assert.equal(named(await addon.listDisplays(), 'kept').id, id, 'without the other');
    await setMonitor(env, 'newcomer', { ...RIGHT_HALF, primary: true });
    assert.equal(named(await addon.listDisplays(), 'kept').id, id, 'with another one');
    const another = startHost(t, env);
    assert.equal(named(await another.addon.listDisplays(), 'kept').id, id, 'in another process');
  });

  test('a monitor that is added, moved or removed is seen by the next call', async (t) => {
    const { addon, env } = await startDesktop(t);
    await setMonitors(env, { fixed: LEFT_HALF });
    const names = async () => (await addon.listDisplays()).map((display) => display.name);
    assert.deepEqual(await names(), ['fixed']);
    await setMonitor(env, 'fickle', RIGHT_HALF);
    assert.deepEqual(await names(), ['fixed', 'fickle']);
    await setMonitor(env, 'fickle', { x: 700, y: 100, width: 500, height: 400 });
    const { originX, originY, width, height } = named(await addon.listDisplays(), 'fickle');
    assert.deepEqual([originX, originY, width, height], [700, 100, 500, 400]);
    await deleteMonitor(env, 'fickle');
    assert.deepEqual(await names(), ['fixed']);
  });

  test('arguments are ignored', async (t) => {
    const { addon } = await startDesktop(t);
    assert.deepEqual(await addon.listDisplays(1, 'two', null), await addon.listDisplays());
  });

  test('a server without RandR is one display', async (t) => {
    const args = ['-extension', 'RANDR'];
    const { addon } = await startDesktop(t, { screen: '800x600x24', args });
    const displays = await addon.listDisplays();
    assert.equal(displays.length, 1);
    assert.deepEqual(
      { ...displays[0], id: 0 },
      {
        id: 0,
        width: 800,
        height: 600,
        isMain: true,
        originX: 0,
        originY: 0,
        scaleFactor: 1,
        name: 'Display',
      },
    );
    assert.deepEqual(await addon.getDisplaySize(), displays[0]);
  });
});

describe('getDisplaySize', () => {
  /** A desktop with a primary display on the left and another on the right, and their records. */
  async function twoDisplays(t) {
    const desktop = await startDesktop(t);
    await setMonitors(desktop.env, { primary: LEFT_HALF, secondary: RIGHT_HALF });
    const displays = await desktop.addon.listDisplays();
    return {
      ...desktop,
      primary: named(displays, 'primary'),
      secondary: named(displays, 'secondary'),
    };
  }

  /** Shows a window in the middle of a display and gives it the keyboard. */
  async function focusOn(painter, { x, y }) {
    const place = { x: x + 200, y: y + 200, width: 200, height: 200 };
    await painter.window('active', { ...place, colour: '#ff0000' });
    await painter.focus('active');
  }

  test('without an argument is the main display', async (t) => {
    const { addon, primary } = await twoDisplays(t);
    const record = await addon.getDisplaySize();
    assert.deepEqual(record, primary);
    assert.deepEqual(Object.keys(record), RECORD_KEYS);
    assert.equal(record.isMain, true);
  });

  test('of an identifier is that display', async (t) => {
    const { addon, primary, secondary } = await twoDisplays(t);
    assert.deepEqual(await addon.getDisplaySize(primary.id), primary);
    assert.deepEqual(await addon.getDisplaySize(secondary.id), secondary);
    assert.equal(secondary.isMain, false);
  });

  for (const wanted of [undefined, null, '1', {}, true]) {
    test(`of ${JSON.stringify(wanted)} is the main display`, async (t) => {
      const { addon, painter, primary } = await twoDisplays(t);
      await focusOn(painter, RIGHT_HALF);
      assert.deepEqual(await addon.getDisplaySize(wanted), primary);
    });
  }

  test('of a number is unaffected by further arguments', async (t) => {
    const { addon, primary, secondary } = await twoDisplays(t);
    assert.deepEqual(await addon.getDisplaySize(secondary.id, primary.id), secondary);
  });

  for (const unknown of [-1, 12345, 0, NaN]) {
    test(`of ${unknown}, which no display has, is the display with the active window under the \
main identifier`, async (t) => {
      const { addon, painter, primary, secondary } = await twoDisplays(t);
      await focusOn(painter, RIGHT_HALF);
      assert.deepEqual(await addon.getDisplaySize(unknown), {
        ...secondary,
        id: primary.id,
        isMain: true,
      });
    });
  }

  test('of an unknown identifier believes a window manager more than the focus', async (t) => {
    const { addon, painter, primary } = await twoDisplays(t);
    await focusOn(painter, RIGHT_HALF);
    assert.equal((await addon.getDisplaySize(-1)).originX, 640);
    await painter.window('left', { x: 100, y: 200, width: 200, height: 200, colour: '#00ff00' });
    await painter.activate('left');
    assert.deepEqual(await addon.getDisplaySize(-1), primary);
  });

  test('of an unknown identifier follows the active window of a window manager', async (t) => {
    const { addon, env, painter } = await startDesktop(t, { manager: true });
    await setMonitors(env, { primary: LEFT_HALF, secondary: RIGHT_HALF });
    const [main] = await addon.listDisplays();
    const isAt = async (x) => (await addon.getDisplaySize(-1)).originX === x;
    await painter.window('right', { x: 800, y: 200, width: 200, height: 200, colour: '#ff0000' });
    await until(() => isAt(640), 'the new window on the right is active');
    const { id, isMain } = await addon.getDisplaySize(-1);
    assert.deepEqual([id, isMain], [main.id, true]);
    await painter.window('left', { x: 100, y: 200, width: 200, height: 200, colour: '#00ff00' });
    await until(() => isAt(0), 'the newer window on the left is active');
  });

  test('of an unknown identifier with no active window is the first display', async (t) => {
    const { addon, primary } = await twoDisplays(t);
    assert.deepEqual(await addon.getDisplaySize(-1), primary);
  });
});

describe('without a server', () => {
  const nothing = {
    id: 0,
    width: 0,
    height: 0,
    isMain: true,
    originX: 0,
    originY: 0,
    scaleFactor: 0,
    name: 'Display',
  };

  test('there are no displays', async (t) => {
    const { addon } = startHost(t, NOWHERE);
    assert.deepEqual(await addon.listDisplays(), []);
  });

  test('the display size is the record of nothing', async (t) => {
    const { addon } = startHost(t, NOWHERE);
    const record = await addon.getDisplaySize();
    assert.deepEqual(record, nothing);
    assert.deepEqual(Object.keys(record), RECORD_KEYS);
    assert.deepEqual(await addon.getDisplaySize(7), nothing);
  });
});
