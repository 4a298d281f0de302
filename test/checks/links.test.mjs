// The documents refer to what is there.
import assert from 'node:assert/strict';
import { mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

import { anchorsOf, findBrokenLinks, findDocuments, linksOf } from './links.mjs';

const root = path.join(path.dirname(fileURLToPath(import.meta.url)), '..', '..');

test('every link between the documents leads to a file and a heading', () => {
  const documents = findDocuments(root);
  assert.ok(documents.includes('README.md') && documents.includes('docs/platforms.md'));
  assert.deepEqual(findBrokenLinks(root, documents), []);
});

test('every guide is in the index of guides, and every example in that of examples', () => {
  const isListed = (index, name) => linksOf(readFileSync(path.join(root, index), 'utf8')).includes(name);
  const namesIn = (folder, pattern) =>
    readdirSync(path.join(root, folder)).filter((name) => pattern.test(name) && name !== 'README.md');
  for (const name of namesIn('docs', /\.md$/)) assert.ok(isListed('docs/README.md', name), name);
  for (const name of namesIn('examples', /\.m?js$/)) {
    assert.ok(isListed('examples/README.md', name), name);
  }
});

test('a link to a missing file, a missing heading or out of the folder is reported', (t) => {
  const folder = mkdtempSync(path.join(tmpdir(), 'deskhand-links-'));
  t.after(() => rmSync(folder, { recursive: true }));
  writeFileSync(path.join(folder, 'b.md'), '# One thing\n');
  writeFileSync(
    path.join(folder, 'a.md'),
    '# Here\n[ok](b.md#one-thing) [ok](#here) [ok](https://example.org/#x) `[no](link.md)`\n' +
      '[x](c.md) [y](b.md#other) [z](#there) ![w](w.svg) [out](../up.md)\n',
  );
  assert.deepEqual(findBrokenLinks(folder, ['a.md']), [
    'a.md: c.md: there is no such file',
    'a.md: b.md#other: there is no such heading',
    'a.md: #there: there is no such heading',
    'a.md: w.svg: there is no such file',
    'a.md: ../up.md: there is no such file',
  ]);
});

test('links are found in text, references and elements, and not in code', () => {
  const text =
    '[a](a.md "title") ![b](b.svg)\n[c]: c.md\n<img src="d.svg" alt="">\n```\n[e](e.md)\n```\n``[f](f.md)``';
  assert.deepEqual(linksOf(text).sort(), ['a.md', 'b.svg', 'c.md', 'd.svg']);
});

test('anchors are those that headings have on GitHub', () => {
  const text = '# A, b & `c()`\n## Same\n## Same\n```sh\n# no heading\n```\n### X11: *the* server\n';
  assert.deepEqual([...anchorsOf(text)], ['a-b--c', 'same', 'same-1', 'x11-the-server']);
});
