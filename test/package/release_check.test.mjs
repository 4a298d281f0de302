// What may be packed.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { test } from 'node:test';

import { findProblems } from '../../scripts/release_check.mjs';
import { root } from './packed.mjs';

const DARWIN = 'prebuilds/darwin-arm64/deskhand.node';
const RUN_LOOP = 'prebuilds/darwin-arm64/run_loop.node';
const LINUX = 'prebuilds/linux-x64/deskhand.node';

const machO = Buffer.from('cffaedfe0c000001', 'hex');
const elf = fs.readFileSync(path.join(root, 'build', 'release', 'published', 'deskhand.node'));

/** A folder with these files, gone with the test. */
function folderWith(t, files) {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'deskhand-test-'));
  t.after(() => fs.rmSync(folder, { recursive: true }));
  for (const [name, bytes] of Object.entries(files)) {
    fs.mkdirSync(path.dirname(path.join(folder, name)), { recursive: true });
    fs.writeFileSync(path.join(folder, name), bytes);
  }
  return folder;
}

test('a package with a binary for each system is fine', (t) => {
  assert.deepEqual(findProblems(folderWith(t, { [DARWIN]: machO, [RUN_LOOP]: machO, [LINUX]: elf })), []);
});

test('a package without one of them is refused', (t) => {
  assert.deepEqual(findProblems(folderWith(t, { [LINUX]: elf })), [
    `${DARWIN} is missing: npm run build:darwin`,
    `${RUN_LOOP} is missing: npm run build:darwin`,
  ]);
  assert.deepEqual(findProblems(folderWith(t, { [DARWIN]: machO, [RUN_LOOP]: machO })), [
    `${LINUX} is missing: npm run build:linux`,
  ]);
});

test('a package with a binary of another system, or a part of one, is refused', (t) => {
  const files = { [DARWIN]: elf, [RUN_LOOP]: machO, [LINUX]: elf.subarray(0, 5000) };
  assert.deepEqual(findProblems(folderWith(t, files)), [
    `${DARWIN} is not a binary of Mach-O for arm64: npm run build:darwin`,
    `${LINUX} was cut off: npm run build:linux`,
  ]);
});

test('npm packs nothing that is refused', (t) => {
  const { prepack } = JSON.parse(fs.readFileSync(path.join(root, 'package.json'), 'utf8')).scripts;
  const folder = folderWith(t, {
    'package.json': JSON.stringify({ name: 'it', version: '1.0.0', scripts: { prepack } }),
  });
  for (const name of ['scripts/release_check.mjs', 'lib/binary_file.js']) {
    fs.mkdirSync(path.dirname(path.join(folder, name)), { recursive: true });
    fs.copyFileSync(path.join(root, name), path.join(folder, name));
  }
  const pack = () => execFileSync('npm', ['pack'], { cwd: folder, encoding: 'utf8', stdio: 'pipe' });
  assert.throws(pack, { stderr: /deskhand\.node is missing: npm run build:linux/ });
  assert.deepEqual(fs.readdirSync(folder).filter((name) => name.endsWith('.tgz')), []);
});
