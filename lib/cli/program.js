'use strict';

const { Command, Option } = require('commander');
const { writeResult } = require('./output.js');

/** Also "-" alone, which stands for standard input or output. */
const NEGATIVE_NUMBER = /^-($|\d|\.\d)/;

/** Commands that take negative numbers as what they are: arguments, not options. */
class Program extends Command {
  createCommand(name) {
    return new Program(name);
  }

  parseOptions(argv) {
    const { operands, unknown } = super.parseOptions(argv);
    if (this.commands.length > 0) return { operands, unknown };
    const end = unknown.includes('--') ? unknown.indexOf('--') : unknown.length;
    const words = unknown.slice(0, end);
    const options = words.filter((word) => word.startsWith('-') && !NEGATIVE_NUMBER.test(word));
    if (options.length > 0) return { operands, unknown: options };
    return { operands: [...operands, ...words, ...unknown.slice(end + 1)], unknown: [] };
  }
}

/** An option from [flags, description, { parse, preset, choices }]. */
function makeOption([flags, description, { parse, preset, choices, conflicts } = {}]) {
  const option = new Option(flags, description);
  if (choices) option.choices(choices);
  if (parse) option.argParser(parse);
  if (conflicts) option.conflicts(conflicts);
  if (preset !== undefined) option.default(preset);
  return option;
}

/**
 * Adds a command. `words` are its arguments, [name, description, parse]; `options` as makeOption() takes
 * them. `run({ words, options, json, load })` resolves with `{ value, text, status }`: what is printed as JSON,
 * or else for people; a status other than 0. `load` gives the addon, or throws.
 */
function define(program, { name, summary, description, words = [], options = [], examples, run }) {
  const command = program.command(name).summary(summary);
  command.description(description ?? `${summary[0].toUpperCase()}${summary.slice(1)}.`);
  for (const [word, explanation, parse] of words) command.argument(word, explanation, parse);
  for (const option of options) command.addOption(makeOption(option));
  command.option('--json', 'print JSON');
  command.helpOption('-h, --help', 'print this help');
  command.addHelpText('after', `\nExamples:\n${examples.map((line) => `  $ ${line}`).join('\n')}`);
  command.action(async (...args) => {
    const given = args.slice(0, words.length);
    const { json, ...rest } = args[words.length];
    const load = () => require('../index.js');
    const result = await run({ words: given, options: rest, json, load });
    writeResult(result, json);
    if (result.status) process.exitCode = result.status;
  });
}

module.exports = { Program, define };
