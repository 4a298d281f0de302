// The types, as TypeScript sees them in the packed package.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { packPackage, root } from './packed.mjs';

const sources = path.join(root, 'test', 'package', 'types');
const compiler = path.join(root, 'node_modules', 'typescript', 'bin', 'tsc');

/** What the compiler says of these files, which lie beside node_modules; '' when it is content. */
function compile(folder, files, ...options) {
  const strict = ['--strict', '--noEmit', '--target', 'es2022', '--resolveJsonModule'];
  const all = [compiler, ...strict, ...options, ...files];
  const { status, stdout } = spawnSync(process.execPath, all, { cwd: folder, encoding: 'utf8' });
  assert.equal(status === 0, stdout === '');
  return stdout;
}

/** The packed package, with the uses of it beside node_modules. */
function packWithUses(t) {
  const { folder } = packPackage(t);
  const uses = fs.readFileSync(path.join(sources, 'uses.ts'));
  for (const name of ['uses.cts', 'uses.mts', 'uses.ts'])
    fs.writeFileSync(path.join(folder, name), uses);
  for (const name of ['commonjs.cts', 'module.mts']) {
    fs.copyFileSync(path.join(sources, name), path.join(folder, name));
  }
  return folder;
}

test('the types hold in CommonJS and in modules', (t) => {
  const files = ['uses.cts', 'uses.mts', 'commonjs.cts', 'module.mts'];
  assert.equal(compile(packWithUses(t), files, '--module', 'nodenext'), '');
});

test('the types hold for bundlers', (t) => {
  const options = ['--module', 'esnext', '--moduleResolution', 'bundler'];
  assert.equal(compile(packWithUses(t), ['uses.ts', 'module.mts'], ...options), '');
});

test('all functions have types and names to import, and nothing else has', async () => {
  const text = fs.readFileSync(path.join(root, 'lib', 'index.d.ts'), 'utf8');
  const declared = [...text.matchAll(/^export function (\w+)/gm)].map(([, name]) => name);
  const { default: deskhand, ...named } = await import(path.join(root, 'lib', 'index.mjs'));
  const names = Object.keys(deskhand);
  assert.equal(names.length, 30);
  assert.deepEqual(declared.sort(), [...names].sort());
  assert.deepEqual(Object.keys(named).sort(), [...names].sort());
  for (const name of names) assert.equal(named[name], deskhand[name]);
});
