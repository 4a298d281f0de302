'use strict';

// What a guide in docs/ says, for tests that hold it to that.
const fs = require('node:fs');
const path = require('node:path');

const docs = path.join(__dirname, '..', '..', 'docs');

function read(page) {
  return fs.readFileSync(path.join(docs, page), 'utf8');
}

/** The blocks of code in a language, as they are. */
function codeOf(page, language) {
  const blocks = read(page).matchAll(/^```(\w*)\n([\s\S]*?)^```$/gm);
  return [...blocks].filter(([, name]) => name === language).map(([, , text]) => text);
}

/** The rows of the table whose first heading is `heading`, each as a list of its cells. */
function tableOf(page, heading) {
  const lines = read(page).split('\n');
  const start = lines.findIndex((line) => line.startsWith(`| ${heading} |`));
  if (start < 0) throw new Error(`${page} has no table with ${heading}`);
  const rows = lines.slice(start + 2);
  const end = rows.findIndex((line) => !line.startsWith('|'));
  return rows.slice(0, end).map((row) => row.split('|').slice(1, -1).map((cell) => cell.trim()));
}

module.exports = { codeOf, read, tableOf };
