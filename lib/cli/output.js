'use strict';

const { CommanderError } = require('commander');
const { hintFor } = require('./hints.js');

/** What went wrong, and what to do about it. */
class Failure extends Error {
  constructor(message, hint) {
    super(message);
    this.hint = hint;
  }
}

/** Names come from programs: what would steer a terminal is not passed on to one. */
function harmless(text) {
  return String(text).replace(/[\u0000-\u001f\u007f-\u009f]/g, '\ufffd');
}

/** Lines of columns that are aligned; numbers to the right. The last column may be of any width. */
function table(headings, rows) {
  const cells = [headings, ...rows.map((row) => row.map(harmless))];
  const isNumeric = headings.map((_, column) =>
    rows.every((row) => typeof row[column] === 'number'),
  );
  const widths = headings.map((_, column) => Math.max(...cells.map((row) => row[column].length)));
  const pad = (text, column) =>
    isNumeric[column] ? text.padStart(widths[column]) : text.padEnd(widths[column]);
  return cells.map((row) => row.map(pad).join('  ').trimEnd()).join('\n');
}

function writeResult({ value, text }, json) {
  const output = json ? JSON.stringify(value, null, 2) : text;
  if (output !== undefined && output !== '') process.stdout.write(`${output}\n`);
}

/** Whether errors are to be JSON; told from the words as even these may be wrong. */
function isJsonWanted(argv) {
  const end = argv.indexOf('--');
  return argv.slice(2, end === -1 ? undefined : end).includes('--json');
}

/** The command among the words, for a hint. */
function commandOf(argv) {
  return argv.slice(2).find((word) => /^[a-z]+$/.test(word));
}

/** { message, hint } of any error. */
function describeError(error, argv) {
  if (!(error instanceof CommanderError)) {
    return { message: error.message, hint: error.hint ?? hintFor(error) };
  }
  const [message, suggestion] = error.message.replace(/^error: /, '').split('\n');
  const command = error.code === 'commander.unknownCommand' ? undefined : commandOf(argv);
  const help = `See "deskhand ${command ? `${command} ` : ''}--help".`;
  const isOption = error.code === 'commander.unknownOption';
  const literal = isOption ? ' What begins with "-" and is no option goes behind "--".' : '';
  return { message, hint: `${suggestion ? `${suggestion} ` : ''}${help}${literal}` };
}

function writeError({ message, hint }, json) {
  if (json) {
    process.stderr.write(`${JSON.stringify({ error: { message, hint: hint ?? null } })}\n`);
    return;
  }
  const lines = [`deskhand: ${message}`];
  // What could not be loaded says what to do at its end already.
  if (hint && !message.includes(hint.split('\n')[0])) lines.push(hint.replace(/^/gm, '  '));
  process.stderr.write(`${lines.join('\n')}\n`);
}

module.exports = { Failure, describeError, harmless, isJsonWanted, table, writeError, writeResult };
