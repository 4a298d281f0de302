// The links between the documents: those that lead to no file or to no heading.
import { existsSync, readdirSync, readFileSync, statSync } from 'node:fs';
import path from 'node:path';

const SKIPPED = new Set(['node_modules', 'build', 'prebuilds', 'out']);

/** All documents below a folder, as paths from there. */
export function findDocuments(root) {
  const found = [];
  const walk = (folder) => {
    for (const entry of readdirSync(path.join(root, folder), { withFileTypes: true })) {
      const file = path.posix.join(folder, entry.name);
      if (entry.isDirectory()) {
        if (!SKIPPED.has(entry.name) && !entry.name.startsWith('.')) walk(file);
      } else if (entry.name.endsWith('.md')) {
        found.push(file);
      }
    }
  };
  walk('.');
  return found.sort();
}

/** The text without what is in fences or code spans: no links are there. */
function withoutCode(text) {
  return text
    .replace(/^( *)(```+|~~~+)[^\n]*\n[\s\S]*?^ *\2[`~]*\s*$/gm, '')
    .replace(/(`+)(?!`)[\s\S]*?[^`]\1(?!`)/g, '``');
}

/** The anchors that GitHub gives to headings: small letters, hyphens for spaces, no punctuation. */
export function anchorsOf(text) {
  const anchors = new Set();
  // Of code only the fences are taken out: spans in headings count with their words.
  const plain = text.replace(/^( *)(```+|~~~+)[^\n]*\n[\s\S]*?^ *\2[`~]*\s*$/gm, '');
  for (const [, heading] of plain.matchAll(/^#{1,6} +(.+?) *#*$/gm)) {
    const words = heading.replace(/\[([^\]]*)\]\([^)]*\)/g, '$1').toLowerCase();
    const anchor = words.replace(/[^\p{L}\p{N}\p{M}_ -]/gu, '').replace(/ /g, '-');
    let name = anchor;
    for (let n = 1; anchors.has(name); ++n) name = `${anchor}-${n}`;
    anchors.add(name);
  }
  for (const [, name] of plain.matchAll(/<a (?:id|name)="([^"]+)"/g)) anchors.add(name);
  return anchors;
}

/** Where a document's links lead, as they are written. */
export function linksOf(text) {
  const plain = withoutCode(text);
  const inline = [...plain.matchAll(/\]\(\s*<?([^)\s>]+)>?(?:\s+"[^"]*")?\s*\)/g)];
  const references = [...plain.matchAll(/^ {0,3}\[[^\]]+\]:\s*<?(\S+?)>?(?:\s|$)/gm)];
  const images = [...plain.matchAll(/<(?:img|a)\s[^>]*(?:src|href)="([^"]+)"/g)];
  return [...inline, ...references, ...images].map(([, target]) => target);
}

/** What is wrong with the links of `documents`, paths below `root`, one line each. */
export function findBrokenLinks(root, documents) {
  const broken = [];
  const read = (file) => readFileSync(path.join(root, file), 'utf8');
  for (const document of documents) {
    for (const link of linksOf(read(document))) {
      if (/^[a-z][a-z+.-]*:/i.test(link)) continue;
      const [place, anchor] = link.split('#');
      const target = place
        ? path.posix.join(path.posix.dirname(document), decodeURIComponent(place))
        : document;
      const file = path.join(root, target);
      if (target.startsWith('..') || !existsSync(file)) {
        broken.push(`${document}: ${link}: there is no such file`);
      } else if (anchor !== undefined && statSync(file).isFile() && target.endsWith('.md')) {
        const isThere = anchorsOf(read(target)).has(decodeURIComponent(anchor));
        if (!isThere) broken.push(`${document}: ${link}: there is no such heading`);
      }
    }
  }
  return broken;
}
