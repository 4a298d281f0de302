// The command line without a desktop: its help, what it says of wrong arguments, and of what is not there.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import fs from 'node:fs';
import { createRequire } from 'node:module';
import os from 'node:os';
import path from 'node:path';
import { describe, test } from 'node:test';
import { root } from './packed.mjs';

const require = createRequire(import.meta.url);
const { responsibleProgram } = require('../../lib/cli/attribution.js');
const manifest = require('../../package.json');

const COMMANDS = [
  ...[
    'doctor',
    'screenshot',
    'displays',
    'windows',
    'apps',
    'click',
    'move',
    'drag',
    'scroll',
    'key',
  ],
  ...['type', 'clipboard', 'open', 'hide', 'unhide'],
];

/** What a command prints in an environment without a display. */
function deskhand(
  args,
  { program = path.join(root, 'bin', 'deskhand.js'), input = '', ...variables } = {},
) {
  const none = { DISPLAY: undefined, WAYLAND_DISPLAY: undefined };
  const env = { ...process.env, ...none, COLUMNS: '100', ...variables };
  const options = { env, encoding: 'utf8', input };
  const { status, stdout, stderr } = spawnSync(process.execPath, [program, ...args], options);
  return { status, output: stdout, errors: stderr };
}

describe('the help', () => {
  test('lists all commands', () => {
    const { status, output, errors } = deskhand(['--help']);
    assert.deepEqual([status, errors], [0, '']);
    const listed = [...output.matchAll(/^ {2}([a-z]+) .*\S {2,}\S/gm)].map(([, name]) => name);
    assert.deepEqual(listed, [...COMMANDS, 'help']);
    assert.equal(deskhand(['help']).output, output);
  });

  for (const command of COMMANDS) {
    test(`of ${command} has its arguments, options and examples`, () => {
      const { status, output, errors } = deskhand([command, '--help']);
      assert.deepEqual([status, errors], [0, '']);
      assert.match(output, new RegExp(`^Usage: deskhand ${command} \\[options\\]`));
      assert.match(output, /^ {2}--json +print JSON$/m);
      const examples = output.slice(output.indexOf('\nExamples:\n')).match(/^ {2}\$ .*$/gm);
      assert.ok(examples.length > 0);
      for (const example of examples)
        assert.match(example, new RegExp(`^ {2}\\$ deskhand ${command}\\b`));
      assert.equal(deskhand(['help', command]).output, output);
    });
  }

  test('is shown for want of a command, which is an error', () => {
    const { status, output, errors } = deskhand([]);
    assert.deepEqual([status, output], [2, '']);
    assert.match(errors, /^Usage: deskhand/);
  });

  test('the version is that of the package', () => {
    assert.deepEqual(deskhand(['--version']), {
      status: 0,
      output: `${manifest.version}\n`,
      errors: '',
    });
  });
});

describe('wrong arguments', () => {
  /** Each: the words, what is said of them. */
  const WRONG = [
    [['clik'], /^unknown command 'clik'$/],
    [['click', '1'], /^missing required argument 'y'$/],
    [['click', '1', 'two'], /'two' is invalid for argument 'y'\. It must be a number\.$/],
    [['click', '1', ''], /must be a number/],
    [['click', '1', '2', '3'], /^too many arguments/],
    [['click', '1', '2', '--count', '0'], /whole number from 1 to 100/],
    [['click', '1', '2', '--button', 'fourth'], /Allowed choices are left, right, middle/],
    [['click', '-1', '-2', '--foo'], /^unknown option '--foo'$/],
    [['move', 'Infinity', '2'], /must be a number/],
    [['scroll', '0', '1.5'], /must be a whole number/],
    [['scroll', '0', '1', '--at', '5'], /two numbers: x,y/],
    [['screenshot'], /^missing required argument 'file'$/],
    [['screenshot', '--region', '1,2,3', 'a.jpg'], /four numbers: x,y,width,height/],
    [['screenshot', '--region', '1,2,0,4', 'a.jpg'], /above 0/],
    [['screenshot', '--size', '10', 'a.jpg'], /WIDTHxHEIGHT/],
    [['screenshot', '--size', '0x10', 'a.jpg'], /from 1 to 65500/],
    [['screenshot', '--quality', '1.5', 'a.jpg'], /above 0 and at most 1/],
    [['screenshot', '--display', '-1', 'a.jpg'], /whole number from 1/],
    [['key'], /^missing required argument 'chord'$/],
    [['key', 'a', '--hold', '4294968'], /from 0 to 4294967/],
    [['key', 'a', '--hold', '10', '--repeat', '2'], /cannot be used with/],
    [['clipboard', 'look'], /Allowed choices are read, write/],
    [['hide'], /^missing required argument 'names'$/],
  ];

  for (const [words, pattern] of WRONG) {
    test(`${words.join(' ')}: status 2, and where to look`, () => {
      const { status, output, errors } = deskhand(words);
      assert.deepEqual([status, output], [2, '']);
      const [message, hint] = errors.split('\n');
      assert.match(message.replace(/^deskhand: /, ''), pattern);
      const command = COMMANDS.includes(words[0]) ? `${words[0]} ` : '';
      assert.ok(hint.includes(`See "deskhand ${command}--help".`), hint);
      const json = deskhand([...words, '--json']);
      assert.deepEqual([json.status, json.output], [2, '']);
      const { error } = JSON.parse(json.errors);
      assert.deepEqual(Object.keys(error), ['message', 'hint']);
      assert.match(error.message, pattern);
    });
  }

  test('a negative number is an argument, also before "--"', () => {
    assert.match(deskhand(['click', '-1', '--', '-2', 'x']).errors, /^deskhand: too many arguments/);
    assert.match(deskhand(['click', '-1', '--help']).output, /^Usage: deskhand click/);
  });

  test('--json behind "--" is a text, and asks for nothing', () => {
    assert.match(deskhand(['type', '--', '--json', 'x']).errors, /^deskhand: too many arguments/);
  });
});

describe('without a display', () => {
  const ARGUMENTS = {
    ...{
      screenshot: ['/nowhere/a.jpg'],
      click: ['1', '2'],
      move: ['-1', '-2'],
      drag: ['1', '2', '3', '-4'],
    },
    ...{
      scroll: ['0', '-1'],
      key: ['a'],
      type: ['a'],
      clipboard: ['read'],
      open: ['a'],
      hide: ['a'],
    },
    ...{ unhide: ['a'] },
  };

  for (const command of COMMANDS.filter((name) => name !== 'doctor')) {
    test(`${command} says so, and what to do`, { skip: process.platform !== 'linux' }, () => {
      const words = [command, ...(ARGUMENTS[command] ?? [])];
      const { status, output, errors } = deskhand(words);
      assert.deepEqual([status, output], [1, '']);
      assert.match(errors, /^deskhand: there is no display\n {2}DISPLAY is not set.*Xvfb :99/);
      const wrong = deskhand([...words, '--json'], { DISPLAY: ':59999' });
      assert.equal(wrong.status, 1);
      const { message, hint } = JSON.parse(wrong.errors).error;
      assert.equal(message, 'there is no display');
      assert.match(hint, /DISPLAY=:59999/);
    });
  }

  test(
    'doctor says what works, and each remedy once',
    { skip: process.platform !== 'linux' },
    () => {
      const { status, output, errors } = deskhand(['doctor']);
      assert.deepEqual([status, errors], [1, '']);
      assert.match(output, /^ok +binary +\/.*deskhand\.node$/m);
      assert.deepEqual(
        [...output.matchAll(/^FAIL +(\w+)/gm)].map(([, name]) => name),
        ['displays', 'screen', 'input', 'screenshot'],
      );
      assert.equal(output.match(/DISPLAY is not set\. On/g).length, 1);
      assert.match(output, /\n4 of 6 do not work\.\n$/);
      const { ok, displays, checks, permissionsOf } = JSON.parse(
        deskhand(['doctor', '--json']).output,
      );
      assert.deepEqual([ok, displays, permissionsOf], [false, [], null]);
      for (const check of checks) assert.equal(check.ok, !check.hint, check.name);
    },
  );

  test(
    'doctor tells what a session of Wayland means',
    { skip: process.platform !== 'linux' },
    () => {
      const { output } = deskhand(['doctor'], { WAYLAND_DISPLAY: 'wayland-0' });
      assert.match(output, /^ok +session .*\n +This session is Wayland/m);
    },
  );
});

describe('without a binary', () => {
  /** The package's JavaScript alone. */
  function copyWithoutBinary(t) {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'deskhand-test-'));
    t.after(() => fs.rmSync(folder, { recursive: true, force: true }));
    for (const name of ['bin', 'lib', 'package.json']) {
      fs.cpSync(path.join(root, name), path.join(folder, name), { recursive: true });
    }
    fs.cpSync(
      path.join(root, 'node_modules', 'commander'),
      path.join(folder, 'node_modules', 'commander'),
      {
        recursive: true,
      },
    );
    return path.join(folder, 'bin', 'deskhand.js');
  }

  test('the help works, and commands say why they do not', (t) => {
    const program = copyWithoutBinary(t);
    assert.equal(deskhand(['--help'], { program }).status, 0);
    const { status, errors } = deskhand(['displays'], { program });
    assert.equal(status, 1);
    assert.match(errors, /^deskhand: deskhand could not be loaded on .*\nTried:\n/);
    assert.equal(errors.match(/Install deskhand again/g).length, 1);
    const { message, hint } = JSON.parse(deskhand(['windows', '--json'], { program }).errors).error;
    assert.match(message, /could not be loaded/);
    assert.match(hint, /^Install deskhand again/);
  });

  test('doctor says so, and looks no further', (t) => {
    const program = copyWithoutBinary(t);
    const { status, output } = deskhand(['doctor', '--json'], { program });
    assert.equal(status, 1);
    const failed = JSON.parse(output).checks.filter(({ ok }) => !ok);
    assert.deepEqual(
      failed.map(({ name }) => name),
      ['binary'],
    );
    assert.match(failed[0].hint, /Install deskhand again/);
  });
});

describe('whom macOS asks about', () => {
  const PROCESSES = `
    1     0 /sbin/launchd
  500     1 /System/Applications/Utilities/Terminal.app/Contents/MacOS/Terminal
  501   500 login
  502   501 -zsh
  503   502 node
  600     1 /Applications/An Editor.app/Contents/MacOS/Electron
  601   600 /Applications/An Editor.app/Contents/Frameworks/Helper.app/Contents/MacOS/Helper
  602   601 /bin/zsh
  603   602 node
  700     1 /usr/sbin/sshd
  701   700 sshd: somebody@ttys001
  702   701 node
  800   502 /Applications/Tool.app/Contents/MacOS/Tool
  801   800 node
`;

  test('is the application in which it began, the outermost one', () => {
    const path = '/System/Applications/Utilities/Terminal.app';
    assert.deepEqual(responsibleProgram(PROCESSES, 503), { name: 'Terminal', path });
    assert.deepEqual(responsibleProgram(PROCESSES, 801), { name: 'Terminal', path });
    const editor = { name: 'An Editor', path: '/Applications/An Editor.app' };
    assert.deepEqual(responsibleProgram(PROCESSES, 603), editor);
  });

  test('is the first program where there is no application', () => {
    assert.deepEqual(responsibleProgram(PROCESSES, 702), { name: 'sshd', path: '/usr/sbin/sshd' });
  });

  test('is unknown where processes cannot be told', () => {
    assert.equal(responsibleProgram('', 503), null);
    assert.equal(responsibleProgram('5 6 one\n6 5 two\n', 5).path, 'two');
  });
});
