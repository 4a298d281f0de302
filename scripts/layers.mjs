// Which source file may include what. Violations are printed one a line, as an editor reads them.
import { readFileSync, readdirSync } from 'node:fs';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

// prettier-ignore
const standardHeaders = new Set([
  'algorithm', 'array', 'atomic', 'bit', 'bitset', 'cassert', 'cerrno', 'cctype', 'cfenv', 'chrono',
  'climits', 'cmath', 'compare', 'concepts', 'condition_variable', 'cstddef', 'cstdint', 'cstdio',
  'cstdlib', 'cstring', 'deque', 'functional', 'initializer_list', 'iterator', 'limits', 'list',
  'map', 'memory', 'mutex', 'new', 'numbers', 'numeric', 'optional', 'ostream', 'queue', 'ranges',
  'ratio', 'set', 'span', 'sstream', 'string', 'string_view', 'thread', 'tuple', 'type_traits',
  'unordered_map', 'unordered_set', 'utility', 'variant', 'vector',
]);

const nodeHeaders = new Set(['napi.h', 'node_api.h', 'js_native_api.h', 'uv.h']);

const backendOf = (file) => /^platform\/([^/]+)\//.exec(file)?.[1] ?? null;

const mayUseNode = (file) => file.startsWith('addon/') || /_handlers\.(cc|h)$/.test(file);

/** What is wrong with one line of `file`, whose path is relative to src/; null when nothing is. */
function checkLine(file, line) {
  const backend = backendOf(file);
  if (/^\s*#\s*(if|ifdef|ifndef|elif)\b/.test(line)) return 'no conditional compilation';
  const [, quote, header] = /^\s*#\s*(?:include|import)\s*(["<])([^">]+)[">]/.exec(line) ?? [];
  if (!header) return null;
  if (quote === '"') {
    const foreign = backendOf(header);
    if (foreign && foreign !== backend) return `${header} is another layer's: include the seam`;
    if (backend && mayUseNode(header)) return `${header} sees Node; a backend must not`;
    return null;
  }
  if (nodeHeaders.has(header)) {
    return mayUseNode(file) ? null : `<${header}>: Node types belong in handlers and addon/`;
  }
  if (!standardHeaders.has(header) && !backend) {
    return `<${header}>: system headers belong in platform/<os>/`;
  }
  return null;
}

/** `sources` maps paths relative to src/ to their texts. */
export function findViolations(sources) {
  const violations = [];
  for (const [file, text] of sources) {
    text.split('\n').forEach((line, index) => {
      const problem = checkLine(file, line);
      if (problem) violations.push(`src/${file}:${index + 1}: ${problem}`);
    });
  }
  return violations;
}

function sourceFiles(folder) {
  return readdirSync(folder, { withFileTypes: true }).flatMap((entry) => {
    const file = path.join(folder, entry.name);
    if (entry.isDirectory()) return sourceFiles(file);
    return /\.(cc|h|mm)$/.test(entry.name) ? [file] : [];
  });
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
  const src = path.join(path.dirname(fileURLToPath(import.meta.url)), '..', 'src');
  const sources = sourceFiles(src).map((file) => [
    path.relative(src, file),
    readFileSync(file, 'utf8'),
  ]);
  const violations = findViolations(sources);
  violations.forEach((violation) => console.error(violation));
  console.log(`layers: ${sources.length} files, ${violations.length} violations`);
  process.exitCode = violations.length ? 1 : 0;
}
