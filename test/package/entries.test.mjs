// What the package gives to whoever loads it, and what package linters say of it.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import fs from 'node:fs';
import { createRequire } from 'node:module';
import path from 'node:path';
import { test } from 'node:test';
import { publint } from 'publint';
import { formatMessage } from 'publint/utils';
import { packPackage, root } from './packed.mjs';

const require = createRequire(import.meta.url);
const manifest = require(path.join(root, 'package.json'));
const binary = path.join(root, 'build', 'release', 'deskhand.node');

/** Runs lines of JavaScript in a folder; what they print. */
function run(folder, kind, script) {
  const args = [`--input-type=${kind}`, '--eval', script];
  const env = { ...process.env, NODE_PATH: undefined };
  const result = spawnSync(process.execPath, args, { cwd: folder, env, encoding: 'utf8' });
  assert.equal(result.status, 0, result.stderr);
  return result.stdout.trim();
}

/** A folder with the packed package, and the binary of this machine in it. */
function packWithBinary(t) {
  const { folder } = packPackage(t);
  const place = path.join(
    folder,
    'node_modules',
    'deskhand',
    'prebuilds',
    `${process.platform}-${process.arch}`,
  );
  fs.mkdirSync(place, { recursive: true });
  fs.copyFileSync(binary, path.join(place, 'deskhand.node'));
  return folder;
}

test('require and import give the same thirty functions', (t) => {
  const folder = packWithBinary(t);
  const required = run(folder, 'commonjs', "console.log(Object.keys(require('deskhand')).join())");
  assert.equal(required.split(',').length, 30);
  const imported = `import deskhand, { mouseMove } from 'deskhand';
    import { createRequire } from 'node:module';
    const { start, stop } = await import('deskhand/run-loop');
    start(); stop();
    const required = createRequire(import.meta.url)('deskhand');
    console.log(required === deskhand, mouseMove === deskhand.mouseMove, Object.keys(deskhand).join());`;
  assert.equal(run(folder, 'module', imported), `true true ${required}`);
});

test('the manifest can be read, and nothing behind the entries', (t) => {
  const { folder } = packPackage(t);
  const version = run(folder, 'commonjs', "console.log(require('deskhand/package.json').version)");
  assert.equal(version, manifest.version);
  const inner = "try { require('deskhand/lib/load.js') } catch (error) { console.log(error.code) }";
  assert.equal(run(folder, 'commonjs', inner), 'ERR_PACKAGE_PATH_NOT_EXPORTED');
});

test('nothing is run when the package is installed', () => {
  const { gypfile, os, scripts } = manifest;
  for (const name of ['preinstall', 'install', 'postinstall'])
    assert.equal(scripts[name], undefined);
  assert.ok(!fs.existsSync(path.join(root, 'binding.gyp')), 'npm would run node-gyp');
  assert.deepEqual({ gypfile, os }, { gypfile: undefined, os: undefined });
});

test('the package installs without a network, and brings the program', (t) => {
  const { tarball, folder } = packPackage(t);
  const place = path.join(folder, 'empty');
  fs.mkdirSync(place);
  const quiet = ['--offline', '--no-audit', '--no-fund', '--prefix', place];
  const cache = path.join(folder, 'cache');
  const installed = spawnSync('npm', ['install', ...quiet, '--cache', cache, tarball], {
    cwd: place,
    encoding: 'utf8',
  });
  assert.equal(installed.status, 0, installed.stderr);
  const program = path.join(place, 'node_modules', '.bin', 'deskhand');
  const { stdout, stderr } = spawnSync(program, ['--version'], { encoding: 'utf8' });
  assert.deepEqual([stdout, stderr], [`${manifest.version}\n`, '']);
});

test('publint finds nothing wrong', async (t) => {
  const { tarball } = packPackage(t);
  const bytes = fs.readFileSync(tarball);
  const packed = bytes.buffer.slice(bytes.byteOffset, bytes.byteOffset + bytes.byteLength);
  const { messages } = await publint({ pack: { tarball: packed }, strict: true });
  assert.deepEqual(
    messages.map((message) => formatMessage(message, manifest)),
    [],
  );
});

test('the types are right for whoever resolves them', (t) => {
  const { tarball } = packPackage(t);
  const program = path.join(root, 'node_modules', '.bin', 'attw');
  // Without the resolution of Node.js 10, which knows no map of entries.
  const args = [tarball, '--profile', 'node16', '--format', 'json'];
  const { stdout, stderr } = spawnSync(program, args, { encoding: 'utf8' });
  const { analysis } = JSON.parse(stdout || '{}');
  assert.ok(analysis, stderr);
  assert.deepEqual(Object.keys(analysis.entrypoints).sort(), ['.', './package.json', './run-loop']);
  const ofNode10 = ({ resolutionKind }) => resolutionKind === 'node10';
  assert.deepEqual(
    analysis.problems.filter((problem) => !ofNode10(problem)),
    [],
  );
});
