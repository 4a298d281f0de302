// How the published Linux binary is linked: what it shows, what it needs, and when it is bound.
// Build it first: scripts/build-linux.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import { createRequire } from 'node:module';
import path from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

const root = path.join(path.dirname(fileURLToPath(import.meta.url)), '..', '..');
const addon = path.join(root, 'build', 'release', 'published', 'deskhand.node');
const require = createRequire(import.meta.url);
const run = (command, ...args) =>
  execFileSync(command, args, { encoding: 'utf8', stdio: ['ignore', 'pipe', 'ignore'] });

const onLinux = { skip: process.platform !== 'linux' };

test('the entry points are all that the binary shows', onLinux, () => {
  const shown = run('nm', '--dynamic', '--defined-only', addon).trim().split('\n');
  assert.deepEqual(
    shown.map((line) => line.split(' ').pop()).sort(),
    [
      'deskhand_unwatch_promises',
      'deskhand_watch_promises',
      'napi_register_module_v1',
      'node_api_module_get_api_version_v1',
    ],
  );
});

test('everything is bound when the binary is loaded, and it is never unloaded', onLinux, () => {
  const flags = run('readelf', '--dynamic', '--wide', addon);
  assert.match(flags, /FLAGS_1\).*\bNOW\b/);
  assert.match(flags, /FLAGS_1\).*\bNODELETE\b/);
});

test('nothing but Node-API of version 8 is left to the host', onLinux, () => {
  const { symbols } = require('node-api-headers');
  const nodeApi = new Set([
    ...symbols.v8.js_native_api_symbols,
    ...symbols.v8.node_api_symbols,
  ]);
  const missing = [...run('ldd', '-r', addon).matchAll(/undefined symbol: (\S+)/g)];
  assert.ok(missing.length > 20, 'ldd lists the functions of Node-API');
  assert.deepEqual(
    missing.map(([, name]) => name).filter((name) => !nodeApi.has(name)),
    [],
  );
});

test('the shared libraries that it needs are the documented ones', onLinux, () => {
  const needed = [...run('readelf', '--dynamic', '--wide', addon).matchAll(/NEEDED.*\[(.+)\]/g)];
  assert.deepEqual(
    needed.map(([, name]) => name).filter((name) => !name.startsWith('ld-linux')).sort(),
    [
      'libc.so.6',
      'libgcc_s.so.1',
      'libgio-2.0.so.0',
      'libglib-2.0.so.0',
      'libgobject-2.0.so.0',
      'libm.so.6',
      'libstdc++.so.6',
      'libxkbcommon.so.0',
    ],
  );
});

/** The highest version of a library's symbols that the binary refers to. */
function highestVersion(library) {
  const references = run('objdump', '--dynamic-syms', addon).matchAll(
    new RegExp(`\\(${library}_([0-9.]+)\\)`, 'g'),
  );
  const versions = [...references].map(([, version]) => version.split('.').map(Number));
  const inOrder = versions.sort(([a, b, c = 0], [x, y, z = 0]) => a - x || b - y || c - z);
  return inOrder.at(-1).join('.');
}

test('the C and C++ libraries may be as old as documented', onLinux, () => {
  assert.equal(highestVersion('GLIBC'), '2.34');
  assert.equal(highestVersion('GLIBCXX'), '3.4.30');
  const guide = fs.readFileSync(path.join(root, 'docs', 'getting-started.md'), 'utf8');
  assert.match(guide, /glibc 2\.34 .*libstdc\+\+ of GCC 12/);
});
