'use strict';

const { InvalidArgumentError } = require('commander');
const { once } = require('node:events');
const path = require('node:path');
const { fork } = require('node:child_process');
const { displaysOf, givenText } = require('./native.js');
const { Failure } = require('./output.js');

/**
 * Puts a text on the clipboard for as long as nobody else does. On X11 a text is gone with the process that
 * has put it there: a process is left behind that serves it. Resolves with its identifier, or null.
 */
async function keepText(addon, text) {
  if (process.platform === 'darwin') {
    addon.writeClipboard(text);
    return null;
  }
  const server = fork(path.join(__dirname, 'clipboard_server.js'), {
    detached: true,
    stdio: ['ignore', 'ignore', 'ignore', 'ipc'],
  });
  server.send(text);
  const ended = once(server, 'exit').then(() => [false]);
  const [isServed] = await Promise.race([once(server, 'message'), ended]);
  if (!isServed) {
    throw new Failure('the text could not be put on the clipboard', 'Run "deskhand doctor".');
  }
  server.unref();
  server.disconnect();
  return server.pid;
}

function read(addon) {
  const text = addon.readClipboard();
  if (text !== null) return { value: { text }, text };
  throw new Failure(
    'there is no text on the clipboard',
    'It is empty, or has something else: a picture, a file.',
  );
}

async function write(addon, word) {
  const text = await givenText(word);
  return { value: { text, servedBy: await keepText(addon, text) } };
}

function toAction(word) {
  if (word === 'read' || word === 'write') return word;
  throw new InvalidArgumentError('Allowed choices are read, write.');
}

module.exports = {
  name: 'clipboard',
  summary: 'read or write the text on the clipboard',
  description:
    'Reads the text on the clipboard, or writes one. On X11 a process stays behind that serves the text, until ' +
    'another program puts something on the clipboard or the server ends.',
  words: [
    ['<action>', 'read or write', toAction],
    ['[text]', 'what to write; standard input when it is absent or "-"'],
  ],
  examples: [
    'deskhand clipboard read',
    "deskhand clipboard write 'Hello, world'",
    'deskhand clipboard write < letter.txt',
  ],
  run({ words: [action, text], load }) {
    const addon = load();
    displaysOf(addon);
    return action === 'read' ? read(addon) : write(addon, text);
  },
};
