// Reads what the checks need of a Mach-O file, through LLVM's llvm-objdump.
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import { fileURLToPath } from 'node:url';

import { bundles } from './expected.mjs';

/** Where the bundle of this name is built. */
export function pathOf(name) {
  return fileURLToPath(new URL(`../../prebuilds/darwin-arm64/${name}`, import.meta.url));
}

const programs = ['llvm-objdump-19', '/usr/lib/llvm-19/bin/llvm-objdump', 'llvm-objdump'];

function objdump(file, ...options) {
  for (const program of programs) {
    try {
      return execFileSync(program, ['--macho', ...options, file], { encoding: 'utf8' });
    } catch (error) {
      if (error.code !== 'ENOENT') throw error;
    }
  }
  throw new Error('llvm-objdump is not installed: install llvm-19');
}

/** CPU, kind and flags of the file, in the dump's words. */
function readHeader(file) {
  const words = objdump(file, '--private-header').trim().split('\n').at(-1).trim().split(/\s+/);
  const [, cpu, , , kind, , , ...flags] = words;
  return { cpu, kind, flags };
}

/** The load commands in order, each with the fields that stand before its first section. */
function readLoadCommands(file) {
  const [, ...blocks] = objdump(file, '--private-headers').split(/^Load command \d+$/m);
  return blocks.map((block) => {
    const own = block.split(/^Section$/m)[0];
    const fields = own.matchAll(/^ *(\w+) (.*?)(?: \(offset \d+\))?$/gm);
    return Object.fromEntries([...fields].map(([, key, value]) => [key, value]));
  });
}

/** Exported names without the leading underscore, and where each stands in memory. */
function readExports(file) {
  const rows = objdump(file, '--exports-trie').matchAll(/^(0x[0-9A-F]+) +_(\S+)$/gm);
  return new Map([...rows].map(([, address, name]) => [name, Number(address)]));
}

/**
 * The imports as the loader reads them. `library` is an install name, or 'any' for a look-up in
 * every image by name, or 'replaceable' for that of a definition which a program may replace.
 */
function readImports(file, libraries) {
  const row =
    /lib_ordinal = (-?\d+) .*\n *weak_import = ([01])\n *name_offset = \d+ \(_(.*)\)$/gm;
  const special = { '-2': 'any', '-3': 'replaceable' };
  return [...objdump(file, '--chained-fixups').matchAll(row)].map(([, ordinal, weak, name]) => ({
    name,
    library: special[ordinal] ?? libraries[ordinal - 1] ?? `ordinal ${ordinal}`,
    weak: weak === '1',
  }));
}

function readSelectors(file) {
  const rows = objdump(file, '--section=__TEXT,__objc_methname').matchAll(/^[0-9a-f]{16}  (.+)$/gm);
  return [...rows].map(([, selector]) => selector);
}

/** What is in `file`, beside what is expected of the bundle of this name. */
export function readBundle(file, name) {
  const commands = readLoadCommands(file);
  const libraries = commands.filter(({ cmd }) => /_DYLIB$/.test(cmd));
  return {
    expected: bundles[name],
    bytes: fs.readFileSync(file),
    header: readHeader(file),
    commands,
    libraries,
    exports: readExports(file),
    imports: readImports(file, libraries.map(({ name }) => name)),
    selectors: readSelectors(file),
  };
}
