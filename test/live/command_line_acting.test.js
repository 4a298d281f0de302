'use strict';

// The command line acts on a desktop: mouse, keyboard, clipboard, applications.
const assert = require('node:assert/strict');
const fs = require('node:fs');
const { describe, test } = require('node:test');
const { startApplications } = require('../support/applications.js');
const { atEnd } = require('../support/cleanup.js');
const { commandLine, runCommand } = require('../support/command_line.js');
const { startDesktop } = require('../support/desktop.js');
const { checksOn, startInputDesktop } = require('../support/input_desktop.js');
const { setMonitors } = require('../support/monitors.js');
const { startPage } = require('../support/receivers.js');
const { until } = require('../support/until.js');
const { startXServer } = require('../support/x_server.js');

const text = (words) => words.map(String);

test('on a page, deskhand', async (t) => {
  const desktop = await startInputDesktop(t, { manager: true });
  const { env, keyboard } = desktop;
  const page = await startPage(t, desktop);
  const check = checksOn(t, desktop, page);
  const { run, json } = commandLine(t, env);
  await page.focus(null);
  const [x, y] = await page.centre('#field');
  const pointer = async () => (await keyboard.state()).pointer;

  await check('move puts the pointer there, and says nothing', async () => {
    assert.equal(await run('move', ...text([x, y])), '');
    assert.deepEqual(await pointer(), [x, y]);
    assert.deepEqual(await json('move', String(x + 1), String(y)), { x: x + 1, y });
    assert.deepEqual(await pointer(), [x + 1, y]);
  });

  await check('click clicks as often, with that button and those modifiers', async () => {
    assert.equal(await run('click', ...text([x, y])), '');
    await page.settle();
    const [click] = page.since('click');
    assert.deepEqual([click.screenX, click.screenY, click.button], [x, y, 0]);
    const words = [...text([x, y]), '--count', '2', '--modifiers', 'ctrl+shift'];
    const said = await json('click', ...words);
    assert.deepEqual(said, { x, y, button: 'left', count: 2, modifiers: 'ctrl+shift' });
    await page.settle();
    const [double] = page.since('dblclick');
    assert.deepEqual([double.ctrlKey, double.shiftKey, double.altKey], [true, true, false]);
    await run('click', ...text([x, y]), '--button', 'middle');
    await page.settle();
    assert.deepEqual(
      page.since('auxclick').map(({ button }) => button),
      [1],
    );
  });

  await check('drag carries a thing to another place', async () => {
    const [card, bin] = [await page.centre('#card'), await page.centre('#bin')];
    const said = await json('drag', ...text([...card, ...bin]));
    const [startX, startY, endX, endY] = [...card, ...bin];
    assert.deepEqual(said, { startX, startY, endX, endY, button: 'left' });
    await until(() => page.since('dragend').length > 0, 'the drag is over');
    const events = page.since('mousedown', 'dragstart', 'drop', 'dragend');
    const targets = events.map(({ type, target }) => `${type} ${target}`);
    assert.ok(targets.includes('drop bin'), targets.join());
  });

  await check('scroll turns the wheel where it is told to', async () => {
    await run('move', '1', '1');
    const said = await json('scroll', '0', '-3', '--at', `${x},${y}`);
    assert.deepEqual(said, { deltaX: 0, deltaY: -3, at: { x, y } });
    await until(() => page.since('wheel').length > 0, 'the page is scrolled');
    const [wheel] = page.since('wheel');
    assert.ok(wheel.deltaY > 0, 'down');
    assert.deepEqual([wheel.screenX, wheel.screenY], [x, y]);
    await run('scroll', '0', '2');
    await until(() => page.since('wheel').at(-1).deltaY < 0, 'the page is scrolled back');
  });

  await check('key presses chords, repeats and holds them', async () => {
    await page.focus(null);
    assert.deepEqual(await json('key', 'ctrl+k', '--repeat', '3'), { chord: 'ctrl+k', repeat: 3 });
    await page.settle();
    const presses = page.since('keydown').filter(({ code }) => code === 'KeyK');
    assert.deepEqual(
      presses.map(({ ctrlKey }) => ctrlKey),
      [true, true, true],
    );
    assert.deepEqual(await json('key', 'shift+j', '--hold', '50'), { chord: 'shift+j', hold: 50 });
    await page.settle();
    assert.equal(page.since('keyup').filter(({ code }) => code === 'KeyJ').length, 1);
  });

  await check('type types arguments and standard input', async () => {
    await page.begin();
    assert.equal(await run('type', 'Grüße, -5 → 東京'), '');
    assert.deepEqual(await json('type', '-5'), { typed: '-5' });
    await run('type', '--', '--json');
    const piped = await runCommand(t, env, ['type'], { input: ' piped\tin' });
    assert.deepEqual([piped.status, piped.errors], [0, '']);
    assert.equal(await page.finish(), 'Grüße, -5 → 東京-5--json piped\tin');
  });
});

test('negative coordinates are those of displays to the left or above', async (t) => {
  const { addon, env } = await startDesktop(t);
  await setMonitors(env, {
    main: { x: 500, y: 300, width: 700, height: 500 },
    left: { x: 0, y: 0, width: 500, height: 300 },
  });
  const { json } = commandLine(t, env);
  assert.deepEqual(await json('move', '-200', '-50'), { x: -200, y: -50 });
  assert.deepEqual(await addon.getCursorPosition(), { x: -200, y: -50 });
  await json('click', '-210', '20', '--button', 'right');
  assert.deepEqual(await addon.getCursorPosition(), { x: -210, y: 20 });
  await json('drag', '-10', '-20', '-.5e2', '-40');
  assert.deepEqual(await addon.getCursorPosition(), { x: -50, y: -40 });
  await json('scroll', '-1', '-1', '--at', '-300,-100');
  assert.deepEqual(await addon.getCursorPosition(), { x: -300, y: -100 });
});

test('a chord without a key is refused, with a hint', async (t) => {
  const { env } = await startXServer(t);
  const { status, errors } = await runCommand(t, env, ['key', 'nothing']);
  assert.equal(status, 1);
  assert.match(
    errors,
    /^deskhand: keyPress: no valid key found in chord 'nothing'\n {2}A chord is/,
  );
});

test('a server without input is told of before anything is done', async (t) => {
  const { env } = await startXServer(t, { args: ['-extension', 'XTEST'] });
  for (const words of [
    ['click', '1', '1'],
    ['type', 'text'],
    ['key', 'a'],
    ['scroll', '0', '1'],
  ]) {
    const { status, errors } = await runCommand(t, env, [...words, '--json']);
    assert.equal(status, 1);
    const { message, hint } = JSON.parse(errors).error;
    assert.equal(message, 'mouse and keyboard may not be used');
    assert.match(hint, /XTEST/);
  }
});

describe('deskhand clipboard', () => {
  /** Nobody but the system waits for it: it may be a zombie for a while. */
  function isAlive(pid) {
    try {
      return !/^\d+ \(.*\) [ZX]/s.test(fs.readFileSync(`/proc/${pid}/stat`, 'latin1'));
    } catch {
      return false;
    }
  }
  const ends = (pid) => until(() => !isAlive(pid), `the process ${pid} has ended`);

  test('reads what is there, and fails when it is no text', async (t) => {
    const { addon, env } = await startDesktop(t);
    const { json, run } = commandLine(t, env);
    const { status, errors } = await runCommand(t, env, ['clipboard', 'read']);
    assert.equal(status, 1);
    assert.match(errors, /^deskhand: there is no text on the clipboard\n/);
    await addon.writeClipboard('Grüße\nan alle');
    assert.equal(await run('clipboard', 'read'), 'Grüße\nan alle\n');
    assert.deepEqual(await json('clipboard', 'read'), { text: 'Grüße\nan alle' });
  });

  test('writes a text that stays until another one comes', async (t) => {
    const { addon, env } = await startDesktop(t);
    const { text: written, servedBy } = await commandLine(t, env).json('clipboard', 'write', 'one');
    assert.equal(written, 'one');
    assert.ok(isAlive(servedBy));
    assert.equal(await addon.readClipboard(), 'one');
    const { servedBy: next } = await commandLine(t, env).json('clipboard', 'write', 'two');
    await ends(servedBy);
    assert.equal(await addon.readClipboard(), 'two');
    await addon.writeClipboard('three');
    await ends(next);
  });

  test('writes standard input, which may be empty, and serves it as long as the server lives', async (t) => {
    const { addon, env, server } = await startDesktop(t);
    const input = 'lines\nof \u{1f600} text\n'.repeat(10_000);
    const { status, output } = await runCommand(t, env, ['clipboard', 'write', '--json'], {
      input,
    });
    assert.equal(status, 0);
    assert.equal(await addon.readClipboard(), input);
    const empty = await runCommand(t, env, ['clipboard', 'write', '--json'], { input: '' });
    await ends(JSON.parse(output).servedBy);
    assert.equal(await addon.readClipboard(), '');
    const { servedBy } = JSON.parse(empty.output);
    assert.ok(isAlive(servedBy));
    await server.kill();
    await ends(servedBy);
  });
});

describe('deskhand open, hide and unhide', () => {
  async function startScene(t) {
    const scene = await startApplications(t, {
      manager: true,
      entries: { terminal: { Name: 'The Terminal', Exec: 'xterm' } },
    });
    const env = { ...scene.env, ...scene.folders.variables };
    return { ...scene, hostEnv: env, ...commandLine(t, env) };
  }

  /** Ends what the command has launched, which outlives it. */
  function endAtEnd(t, pid) {
    atEnd(t, async () => {
      process.kill(-pid, 'SIGKILL');
      await until(() => !fs.existsSync(`/proc/${pid}`), 'the launched program has ended');
    });
  }

  test('an application is launched by its name, hidden and shown again', async (t) => {
    const { addon, json, run, showsExactly } = await startScene(t);
    const app = { bundleId: 'terminal', displayName: 'The Terminal' };
    assert.deepEqual(await json('open', 'The Terminal'), app);
    const { pid, bundleId } = await addon.getFrontmostApp();
    endAtEnd(t, pid);
    assert.equal(bundleId, 'terminal');
    assert.equal(await run('hide', 'terminal'), '');
    await showsExactly([]);
    assert.deepEqual(await json('unhide', 'The Terminal'), [app]);
    await showsExactly(['terminal']);
    assert.deepEqual(await json('hide', 'terminal'), [app]);
    await showsExactly([]);
    await run('open', 'terminal');
    await showsExactly(['terminal']);
  });

  test('what nobody knows, does not run or does not open is told', async (t) => {
    const { folders, hostEnv } = await startScene(t);
    folders.put('user', 'failing', { Name: 'Failing', Exec: folders.script('failing', 'exit 1') });
    const errorOf = async (...words) => {
      const { status, errors, output } = await runCommand(t, hostEnv, [...words, '--json']);
      assert.deepEqual([status, output], [1, '']);
      return JSON.parse(errors).error;
    };
    for (const command of ['open', 'hide', 'unhide']) {
      const { message, hint } = await errorOf(command, 'Nobody');
      assert.equal(message, 'no application is called "Nobody"');
      assert.match(hint, /deskhand apps --installed/);
    }
    assert.equal(
      (await errorOf('hide', 'terminal')).message,
      '"The Terminal" (terminal) does not run',
    );
    assert.equal((await errorOf('open', 'failing')).message, '"Failing" (failing) did not open');
  });
});
