// The symptoms in docs/troubleshooting.md are what the code says.
import assert from 'node:assert/strict';
import { readdirSync, readFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

const root = path.join(path.dirname(fileURLToPath(import.meta.url)), '..', '..');

function filesBelow(folder) {
  return readdirSync(path.join(root, folder), { withFileTypes: true }).flatMap((entry) => {
    const file = path.join(folder, entry.name);
    return entry.isDirectory() ? filesBelow(file) : [file];
  });
}

/** All sources, with texts in one piece that were broken into lines, and without escapes. */
function readSources() {
  const files = [...filesBelow('src'), ...filesBelow('lib')];
  const text = files.map((file) => readFileSync(path.join(root, file), 'utf8')).join('\n');
  return text.replace(/(["'`])\s*(?:\+\s*)?\n\s*\1/g, '').replace(/" \+ ?"/g, '');
}

/** The texts in code of the first column, other than names of functions. */
function symptomsOf(page) {
  const cells = [...page.matchAll(/^\| (.*?) \|/gm)].map(([, cell]) => cell);
  const texts = cells.flatMap((cell) => [...cell.matchAll(/`([^`]+)`/g)].map(([, text]) => text));
  return texts.filter((text) => text.includes(' '));
}

/** Whether the sources have all pieces of a text, which `…` and `: ` separate. */
function isSaid(text, sources) {
  const pieces = text.split(/…|: /).map((piece) => piece.trim());
  return pieces.filter((piece) => /\w/.test(piece)).every((piece) => sources.includes(piece));
}

test('every text of an error in the guide is one of the code', () => {
  const sources = readSources();
  const symptoms = symptomsOf(readFileSync(path.join(root, 'docs', 'troubleshooting.md'), 'utf8'));
  assert.ok(symptoms.length > 20, `${symptoms.length} texts`);
  assert.deepEqual(symptoms.filter((text) => !isSaid(text, sources)), []);
});

test('a text that the code does not say is found', () => {
  const sources = readSources();
  assert.equal(isSaid('Region capture timed out after 10 seconds', sources), true);
  assert.equal(isSaid('Region capture timed out after 11 seconds', sources), false);
  assert.equal(isSaid("keyPress: no valid key found in chord '…'", sources), true);
  assert.equal(isSaid('the X server at … is tired', sources), false);
});
