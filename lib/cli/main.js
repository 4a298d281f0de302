'use strict';

// The command line: a thin program over the addon's functions.
const { CommanderError } = require('commander');
const { version } = require('../../package.json');
const { Program, define } = require('./program.js');
const { describeError, isJsonWanted, writeError } = require('./output.js');

const COMMANDS = [
  require('./doctor.js'),
  require('./screenshot.js'),
  ...require('./desktop.js'),
  ...require('./mouse.js'),
  ...require('./keyboard.js'),
  require('./clipboard.js'),
  ...require('./applications.js'),
];

const USAGE_STATUS = 2;

const INTRODUCTION =
  'Operates the desktop as a person would: looks at the screen, moves the mouse, presses keys.\n\n' +
  'Positions are in points of the global desktop space: from the top-left corner of the primary display, y ' +
  'down; on displays to the left or above they are negative. On X11 a point is a pixel.';

const HELP_END = `
"deskhand <command> --help" has the details and examples. With --json every
command prints JSON, and its errors, too. The status is 0 when all went well,
1 when something did not, 2 for wrong arguments.

Begin with "deskhand doctor".`;

function build() {
  const program = new Program('deskhand');
  program
    .description(INTRODUCTION)
    .version(version, '-V, --version', 'print the version')
    .helpOption('-h, --help', 'print this help')
    .helpCommand('help [command]', 'print the help of a command')
    .addHelpText('after', HELP_END)
    .exitOverride()
    .configureOutput({ outputError: () => {} }); // errors are written here, all in one way
  for (const command of COMMANDS) define(program, command);
  return program;
}

/** Help and versions that were asked for, or shown for want of a command, are nothing to report. */
function isHelp({ code }) {
  return /^commander\.(help|helpDisplayed|version)$/.test(code);
}

/** Runs the program; sets the process's status. */
async function run(argv) {
  // Whoever reads what is printed may have enough of it.
  process.stdout.on('error', ({ code }) => process.exit(code === 'EPIPE' ? 0 : 1));
  try {
    await build().parseAsync(argv);
  } catch (error) {
    if (!isHelp(error)) writeError(describeError(error, argv), isJsonWanted(argv));
    const isUsage = error instanceof CommanderError;
    process.exitCode = isUsage && error.exitCode !== 0 ? USAGE_STATUS : isUsage ? 0 : 1;
  }
}

module.exports = { run };
