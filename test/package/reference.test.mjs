// The reference in docs/ is the one that the types make.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import { createRequire } from 'node:module';
import os from 'node:os';
import path from 'node:path';
import { test } from 'node:test';
import { root } from './packed.mjs';

const deskhand = createRequire(import.meta.url)('../..');

const reference = () => fs.readFileSync(path.join(root, 'docs', 'api.md'), 'utf8');

test('docs/api.md is up to date: else run "npm run docs"', (t) => {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'deskhand-test-'));
  t.after(() => fs.rmSync(folder, { recursive: true, force: true }));
  const program = path.join(root, 'node_modules', '.bin', 'typedoc');
  const strict = ['--treatWarningsAsErrors', '--logLevel', 'Warn'];
  execFileSync(program, ['--out', folder, ...strict], { cwd: root, encoding: 'utf8' });
  assert.equal(reference(), fs.readFileSync(path.join(folder, 'api.md'), 'utf8'));
});

/** What the reference says of one function. */
function sectionOf(name) {
  const [, section] = reference().split(`\n### ${name}()\n`);
  return section?.split('\n### ')[0];
}

test('every function has its section, with the error that a call without arguments makes', () => {
  const throwing = Object.keys(deskhand).filter((name) => {
    assert.ok(sectionOf(name), name);
    const needed = /^function \w+\((?!\))/m.test(sectionOf(name));
    if (!needed || /^(resolve|appUnder|open|hide|unhide|write|getDisplay)/.test(name)) return false;
    assert.throws(deskhand[name], ({ name: kind, message }) => {
      assert.ok(sectionOf(name).includes(`\`${kind}\`: \`"${message}"\``), `${name}: ${message}`);
      return true;
    });
    return true;
  });
  assert.equal(throwing.length, 12);
});

test('no word that leads to another place leads nowhere', () => {
  const text = reference();
  const toAnchor = (title) => title.toLowerCase().replace(/[^\w -]/g, '');
  const anchors = new Set([
    ...[...text.matchAll(/^#+ (.+)$/gm)].map(([, title]) => toAnchor(title)),
    ...[...text.matchAll(/<a id="([^"]+)">/g)].map(([, id]) => id),
  ]);
  const targets = [...text.matchAll(/\]\(#([^)]+)\)/g)].map(([, target]) => target);
  assert.ok(targets.length > 20);
  assert.deepEqual(
    targets.filter((target) => !anchors.has(target)),
    [],
  );
});
