'use strict';

// What commands ask before and around calls of the addon.
const runLoop = require('../run-loop.js');
const { accessibilityHint, displayHint } = require('./hints.js');
const { Failure } = require('./output.js');

/** Awaits a promise of the addon's while the main dispatch queue is serviced. */
async function serviced(action) {
  runLoop.start();
  try {
    return await action();
  } finally {
    runLoop.stop();
  }
}

/** The displays; a failure when there are none. */
function displaysOf(addon) {
  const displays = addon.listDisplays();
  if (displays.length === 0) throw new Failure('there is no display', displayHint());
  return displays;
}

/** Mouse and keyboard functions say nothing when they may not do anything. */
function requireInput(addon) {
  if (addon.checkAccessibility()) return;
  displaysOf(addon);
  throw new Failure('mouse and keyboard may not be used', accessibilityHint());
}

/** The application that a person calls so. */
function resolveApp(addon, name) {
  const app = addon.resolveAppName(name);
  if (app) return app;
  const hint =
    'See "deskhand apps" for what runs and "deskhand apps --installed" for what is installed.';
  throw new Failure(`no application is called "${name}"`, hint);
}

/** All that is written to standard input, as text. */
async function readInput() {
  const chunks = [];
  for await (const chunk of process.stdin) chunks.push(chunk);
  return Buffer.concat(chunks).toString('utf8');
}

/** A text from the command line, or else from standard input. */
function givenText(word) {
  if (word !== undefined && word !== '-') return word;
  if (process.stdin.isTTY && word === undefined) {
    throw new Failure(
      'there is no text',
      'Give it as an argument, in quotes, or on standard input.',
    );
  }
  return readInput();
}

module.exports = { displaysOf, givenText, requireInput, resolveApp, serviced };
