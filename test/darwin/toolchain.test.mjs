// The cross build's compiler options hold the line of macOS 14.0. Configure it first:
// scripts/build-darwin.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import fs from 'node:fs';
import { before, describe, test } from 'node:test';
import { fileURLToPath } from 'node:url';

const build = fileURLToPath(new URL('../../build/darwin-arm64/', import.meta.url));

/** How the build compiles a file of the macOS backend, but from standard input and to nowhere. */
function backendCommand() {
  const commands = JSON.parse(fs.readFileSync(`${build}compile_commands.json`, 'utf8'));
  const { command } = commands.find(({ file }) => file.endsWith('platform/macos/displays.mm'));
  return command.replace(/ -o \S+ -c \S+$/, ' -fsyntax-only -');
}

function callOfFunctionIntroducedIn(version) {
  return `
    #include <os/availability.h>
    extern "C" void Introduced() API_AVAILABLE(macos(${version}));
    void Call() { Introduced(); }`;
}

describe('the cross build', () => {
  let command;
  before(() => {
    command = backendCommand();
  });

  const compile = (source) =>
    spawnSync(command, { shell: true, cwd: build, input: source, encoding: 'utf8' });

  test('accepts a call of what macOS 14.0 has', () => {
    const { status, stderr } = compile(callOfFunctionIntroducedIn('14.0'));
    assert.equal(status, 0, stderr);
  });

  test('rejects a call of what is newer', () => {
    const { status, stderr } = compile(callOfFunctionIntroducedIn('14.1'));
    assert.notEqual(status, 0);
    assert.match(stderr, /error: 'Introduced' is only available on macOS 14\.1 or newer/);
  });

  test("takes libc++ as macOS 14.0 has it, without what libc++ 18 added to the library", () => {
    const { status, stderr } = compile(`
      #include <version>
      static_assert(_LIBCPP_AVAILABILITY_HAS_TO_CHARS_FLOATING_POINT == 1);
      static_assert(_LIBCPP_AVAILABILITY_HAS_PRINT == 0);`);
    assert.equal(status, 0, stderr);
  });

  test('lays strings out as the libc++ of macOS does on Arm', () => {
    const { status, stderr } = compile(`
      #include <string>
      #ifndef _LIBCPP_ABI_ALTERNATE_STRING_LAYOUT
      #error "another layout than that of the system's library"
      #endif
      static_assert(sizeof(std::string) == 24);`);
    assert.equal(status, 0, stderr);
  });
});
