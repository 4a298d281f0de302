// The code and the commands in the documents are of this package as it is.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { existsSync, readFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

import { blocksOf, namesUsed, pathsNamed, scriptsNamed } from './code.mjs';
import { findDocuments } from './links.mjs';

const root = path.join(path.dirname(fileURLToPath(import.meta.url)), '..', '..');
const documents = findDocuments(root);
const read = (file) => readFileSync(path.join(root, file), 'utf8');
const blocksIn = (...languages) =>
  blocksOf(root, documents).filter(({ language }) => languages.includes(language));

test('every function that an example of code takes from the package is declared', () => {
  const declared = new Set(
    [...read('lib/index.d.ts').matchAll(/^export function (\w+)/gm)].map(([, name]) => name),
  );
  const blocks = blocksIn('js', 'mjs', 'ts');
  assert.ok(blocks.length > 5, `${blocks.length} blocks`);
  for (const { document, text } of blocks) {
    const unknown = namesUsed(text).filter((name) => !declared.has(name));
    assert.deepEqual(unknown, [], document);
  }
});

test('every example of JavaScript can be parsed', () => {
  for (const { document, text } of blocksIn('js')) {
    // As it stands, or as what could stand in a function that may await.
    const isWhole = (code) =>
      spawnSync(process.execPath, ['--check', '-'], { input: code }).status === 0;
    assert.ok(isWhole(text) || isWhole(`async () => {\n${text}\n};`), `${document}:\n${text}`);
  }
});

test('every example of shell can be parsed', () => {
  for (const { document, text } of blocksIn('sh', 'bash')) {
    const { status, stderr } = spawnSync('bash', ['-n'], { input: text, encoding: 'utf8' });
    assert.equal(status, 0, `${document}: ${stderr}`);
  }
});

test('every script that a document names is there', () => {
  const { scripts } = JSON.parse(read('package.json'));
  for (const document of documents) {
    const { files, runs } = scriptsNamed(read(document));
    assert.deepEqual(files.filter((name) => !existsSync(path.join(root, name))), [], document);
    assert.deepEqual(runs.filter((name) => !(name in scripts)), [], document);
  }
});

test('every path that a document names is there', () => {
  // Within a folder paths may be counted from there.
  const isThere = (name, document) =>
    [root, path.join(root, path.dirname(document))].some((base) => existsSync(path.join(base, name)));
  for (const document of documents) {
    const missing = pathsNamed(read(document)).filter((name) => !isThere(name, document));
    assert.deepEqual(missing, [], document);
  }
});

test('names, scripts and paths are found in text', () => {
  const code = "const { a, b } = require('deskhand');\nimport { c, type D } from 'deskhand';\ndeskhand.e();";
  assert.deepEqual(namesUsed(code), ['a', 'b', 'c', 'e']);
  assert.deepEqual(scriptsNamed('`./scripts/build`, scripts/lib.sh. npm run build:darwin'), {
    files: ['scripts/build', 'scripts/lib.sh'],
    runs: ['build:darwin'],
  });
  const text = '`src/addon/module.cc`, `test/live`, `src/<subject>/x.cc`, `test/*.js`, src/bare.cc';
  assert.deepEqual(pathsNamed(text), ['src/addon/module.cc', 'test/live']);
});
