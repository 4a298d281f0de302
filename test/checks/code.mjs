// What the documents show as code and commands, for a check of each.
import { readFileSync } from 'node:fs';
import path from 'node:path';

/** The blocks of code of documents: { document, language, text }. */
export function blocksOf(root, documents) {
  return documents.flatMap((document) => {
    const page = readFileSync(path.join(root, document), 'utf8');
    const blocks = page.matchAll(/^```(\w*)\n([\s\S]*?)^```$/gm);
    return [...blocks].map(([, language, text]) => ({ document, language, text }));
  });
}

/** The names that JavaScript takes from the package: deskhand.name and { name } = require('deskhand'). */
export function namesUsed(text) {
  const taken = /\{([^{}]*)\}\s*(?:=\s*require\(|from\s*)'deskhand'/g;
  const lists = [...text.matchAll(taken)].flatMap(([, list]) => list.split(','));
  const members = [...text.matchAll(/\bdeskhand\.(\w+)/g)].map(([, name]) => name);
  const names = lists.map((name) => name.trim()).filter((name) => name && !name.startsWith('type '));
  return [...new Set([...names, ...members])];
}

/** The scripts of this repository that a text names: scripts/name, npm run name. */
export function scriptsNamed(text) {
  const files = [...text.matchAll(/\bscripts\/[\w.-]*\w/g)].map(([name]) => name);
  const runs = [...text.matchAll(/\bnpm run ([\w:-]+)/g)].map(([, name]) => name);
  return { files: [...new Set(files)], runs: [...new Set(runs)] };
}

/** The paths of this repository that a text names in code spans; patterns and made-up names are none. */
export function pathsNamed(text) {
  const folders = 'src|test|docs|lib|cmake|demo|bench|examples';
  const spans = text.matchAll(new RegExp(`\`((?:${folders})/[\\w./-]*)\``, 'g'));
  return [...new Set([...spans].map(([, name]) => name))];
}
