'use strict';

// The clipboard, shared with other programs: small tools, a GTK dialog, a browser.
const assert = require('node:assert/strict');
const { execFile } = require('node:child_process');
const { describe, test } = require('node:test');
const path = require('node:path');
const { startClipboardPeer } = require('../support/clipboard_peer.js');
const { startHost } = require('../support/host.js');
const { startInputDesktop } = require('../support/input_desktop.js');
const { start } = require('../support/processes.js');
const { startEntry, startPage } = require('../support/receivers.js');
const { runScript } = require('../support/scripts.js');
const { until } = require('../support/until.js');
const { startXServer } = require('../support/x_server.js');

const script = (name) => path.join(__dirname, 'scripts', name);

const LARGEST = 64 * 1024 * 1024;
const TEN_MEGABYTES = 'ten megabytes é€😀\n'.repeat(430_000);

const texts = {
  'plain words': 'plain words',
  'lines and a tab': 'one\r\ntwo\n\tthree\n',
  'characters of one, two, three and four bytes': 'aé€😀 𝔘𝔫𝔦 👩‍👩‍👧',
  'nothing': '',
  'ten megabytes': TEN_MEGABYTES,
};

/**
 * Small programs that put their input onto the clipboard, or write out what is there.
 * `keepsNothing`: an empty input makes it give the clipboard up.
 */
const tools = {
  xclip: { put: ['-selection', 'clipboard', '-i'], get: ['-selection', 'clipboard', '-o'] },
  xsel: { put: ['--clipboard', '--input'], get: ['--clipboard', '--output'], keepsNothing: true },
};

function get(env, tool) {
  return new Promise((resolve, reject) => {
    const options = { env, maxBuffer: LARGEST };
    execFile(tool, tools[tool].get, options, (error, text) =>
      error ? reject(error) : resolve(text),
    );
  });
}

/** It stays in the background for as long as it has the clipboard. */
function put(t, env, tool, text) {
  const child = start(t, tool, tools[tool].put, { env, stdio: ['pipe', 'ignore', 'pipe'] });
  child.stdin.end(text);
}

/** Equal, without a difference of megabytes when they are not. */
function assertSame(actual, expected) {
  if (actual?.length > 1000) assert.ok(actual === expected, 'another long text');
  else assert.equal(actual, expected);
}

async function startScene(t) {
  const { env } = await startXServer(t);
  const { addon } = startHost(t, env);
  return { env, addon, peer: startClipboardPeer(t, env) };
}

describe('a text', () => {
  for (const tool of Object.keys(tools)) {
    test(`goes to ${tool} unchanged`, async (t) => {
      const { env, addon } = await startScene(t);
      for (const [what, text] of Object.entries(texts)) {
        assert.equal(await addon.writeClipboard(text), undefined, what);
        assertSame(await get(env, tool), text);
        assertSame(await addon.readClipboard(), text);
      }
    });

    test(`comes from ${tool} unchanged`, async (t) => {
      const { env, addon } = await startScene(t);
      for (const [what, text] of Object.entries(texts)) {
        if (tools[tool].keepsNothing && text === '') continue;
        put(t, env, tool, text);
        const hasCome = async () => (await addon.readClipboard()) === text;
        await until(hasCome, `${what} has come`);
      }
    });
  }

  test('is copied and pasted with keys in a GTK entry and in a browser', async (t) => {
    const desktop = await startInputDesktop(t, { manager: true });
    const { addon } = desktop;
    const pasted = texts['characters of one, two, three and four bytes'];
    const page = await startPage(t, desktop);
    await page.ask("window.removeEventListener('keydown', keepForPage), true");
    for (const receiver of [startEntry(t, desktop), page]) {
      const typed = `typed into ${receiver.name}`;
      await receiver.begin();
      await addon.typeText(typed);
      await addon.keyPress('ctrl+a');
      await addon.keyPress('ctrl+c');
      await until(async () => (await addon.readClipboard()) === typed, `${typed} is copied`);
      await addon.writeClipboard(pasted);
      await addon.keyPress('ctrl+v');
      assert.equal(await receiver.finish(), pasted);
    }
  });

  test('ends at its first U+0000 when it is read, whoever wrote it', async (t) => {
    const { addon, peer } = await startScene(t);
    await addon.writeClipboard('before\0after');
    assert.equal(await addon.readClipboard(), 'before');
    await peer.offer({ UTF8_STRING: 'theirs\0too' });
    assert.equal(await addon.readClipboard(), 'theirs');
  });

  test('stays when what is to be written is no string', async (t) => {
    const { addon } = await startScene(t);
    await addon.writeClipboard('kept');
    for (const wrong of [[], [123], [null], [['kept not']], [{}], [undefined]]) {
      assert.equal(await addon.writeClipboard(...wrong), undefined);
      assert.equal(await addon.readClipboard(), 'kept');
    }
  });

  test('is there after the worker thread that wrote it has ended, and programs that are started \
inherit nothing of it', async (t) => {
    const { env } = await startXServer(t);
    const { code, errors, messages } = await runScript(t, script('clipboard_worker.js'), { env });
    assert.equal(code, 0, errors);
    const [{ here, there, before, after }] = messages;
    assert.deepEqual({ here, there }, { here: 'from a worker', there: 'from a worker' });
    assert.deepEqual(after, before);
  });

  test('takes the place of another in one step', async (t) => {
    const { addon, peer } = await startScene(t);
    await addon.writeClipboard('text 0');
    let isOver = false;
    const writing = (async () => {
      for (let i = 1; !isOver; ++i) await addon.writeClipboard(`text ${i}`);
    })();
    for (let i = 0; i < 300; ++i) {
      const [text] = await peer.ask('UTF8_STRING');
      assert.match(text?.bytes.toString() ?? 'nothing', /^text \d+$/);
    }
    isOver = true;
    await writing;
  });
});

describe('what other programs have', () => {
  const umlaut = Buffer.from([0x66, 0xfc, 0x72]);
  for (const [what, contents, expected] of [
    ['nothing', {}, null],
    ['an image only', { 'image/png': [0x89, 0x50, 0x4e, 0x47] }, null],
    ['a text and an image', { 'image/png': [0x89], UTF8_STRING: 'für' }, 'für'],
    ['an empty text', { UTF8_STRING: '' }, ''],
    ['a text with its encoding in its type', { 'text/plain;charset=utf-8': 'für' }, 'für'],
    ['a text in Latin-1 only', { STRING: umlaut }, 'für'],
    ['the same in several encodings', { STRING: '?', UTF8_STRING: 'für' }, 'für'],
    ['a text that is no UTF-8', { UTF8_STRING: umlaut }, 'f\ufffdr'],
    ['half a character at the end', { UTF8_STRING: [0x61, 0xe2, 0x82] }, 'a\ufffd'],
  ]) {
    test(`${what} is read as ${JSON.stringify(expected)}`, async (t) => {
      const { addon, peer } = await startScene(t);
      await addon.writeClipboard('ours');
      await peer.offer(contents);
      assert.equal(await addon.readClipboard(), expected);
    });
  }

  test('is none when nobody has the clipboard', async (t) => {
    const { addon } = await startScene(t);
    assert.equal(await addon.readClipboard(), null);
  });
});

describe('who asks for our text', () => {
  test('is told in which forms it is there, and gets each', async (t) => {
    const { addon, peer } = await startScene(t);
    await addon.writeClipboard('für 5 €');
    const [targets] = await peer.ask('TARGETS');
    const utf8 = ['UTF8_STRING', 'text/plain;charset=utf-8', 'text/plain', 'TEXT'];
    const others = ['TARGETS', 'MULTIPLE', 'TIMESTAMP', 'SAVE_TARGETS', 'STRING'];
    assert.deepEqual(targets.names.sort(), [...utf8, ...others].sort());
    for (const answer of await peer.ask(...utf8)) {
      assert.equal(answer.bytes.toString(), 'für 5 €');
    }
    const [latin1, time, image] = await peer.ask('STRING', 'TIMESTAMP', 'image/png');
    assert.deepEqual(latin1, { type: 'STRING', bytes: Buffer.from('für 5 ?', 'latin1') });
    assert.equal(time.type, 'INTEGER');
    assert.equal(time.bytes.length, 4);
    assert.ok(time.bytes.readUInt32LE() > 0, 'a time of the server');
    assert.equal(image, undefined);
  });

  test('gets several forms at once, without those that there are not', async (t) => {
    const { addon, peer } = await startScene(t);
    await addon.writeClipboard('für 5 €');
    const sizes = await peer.askMultiple('UTF8_STRING', 'image/png', 'STRING', 'TIMESTAMP');
    assert.deepEqual(sizes, [10, NaN, 7, 4]);
  });

  test('gets nothing as of a time when it was not ours', async (t) => {
    const { addon, peer } = await startScene(t);
    await addon.writeClipboard('of now');
    assert.equal(await peer.isGivenEarly('UTF8_STRING'), false);
    assert.equal((await peer.ask('UTF8_STRING'))[0].bytes.toString(), 'of now');
  });
});
