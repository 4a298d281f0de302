'use strict';

const path = require('node:path');
const { startLineProgram } = require('./line_program.js');

const root = path.join(__dirname, '..', '..');
const program =
  process.env.DESKHAND_CLIPBOARD_PEER ??
  path.join(root, 'build', 'unit', 'test', 'support', 'clipboard_peer');

const hex = (bytes) => Buffer.from(bytes).toString('hex');

/** { type, bytes }, or undefined for what was refused. */
function readValue(word) {
  if (word === 'none') return undefined;
  const split = word.indexOf(':');
  const [type, value] = [word.slice(0, split), word.slice(split + 1)];
  if (type === 'ATOM') return { type, names: value.split(',').filter(Boolean) };
  return { type, bytes: Buffer.from(value, 'hex') };
}

/** Another program on the clipboard of a server; see clipboard_peer.c. */
function startClipboardPeer(t, env) {
  const say = startLineProgram(t, program, [], env);
  const order = async (...words) => {
    const [verdict, ...rest] = (await say(...words)).split(' ');
    if (verdict !== 'ok') throw new Error(`the peer cannot do "${words.join(' ')}"`);
    return rest;
  };
  const size = async (...words) => Number((await order(...words))[0]);
  return {
    /** Takes the clipboard, with texts or bytes by target. */
    offer: (contents) =>
      order('offer', ...Object.entries(contents).map(([target, it]) => `${target}=${hex(it)}`)),
    hang: () => order('hang'),
    /** Answers who asked last after all; rejects when he has gone. */
    answerLate: () => order('late'),
    /** `then`: 'die', 'hang', or the number of bytes in each piece of a text without an end. */
    halfway: (then) => order('halfway', then),
    ask: async (...targets) => (await order('ask', ...targets)).map(readValue),
    /** Whether it is given what it asks for as of a minute ago. */
    isGivenEarly: async (target) => (await order('early', target))[0] === 'given',
    /** Sizes of what was given, or NaN, for several targets at once. */
    askMultiple: async (...targets) => (await order('multiple', ...targets)).map(Number),
    /** Takes the first piece of a text of many; resolves with its size. */
    stall: () => size('stall'),
    /** Takes the others; resolves with the size of the whole. */
    resume: () => size('resume'),
    vanish: () => order('vanish'),
    /** Becomes the clipboard manager, who answers, or never does. */
    manage: ({ never = false } = {}) => order('manage', never ? 'never' : ''),
    /** The size of the text that the manager keeps, and gives in its owner's place. */
    kept: () => size('kept'),
  };
}

module.exports = { startClipboardPeer };
