// The checks find what they are there for: each is given a copy of the bundle with one thing wrong.
// A copy is damaged in place, so that nothing moves and the rest stays readable.
import assert from 'node:assert/strict';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { after, before, describe, test } from 'node:test';

import { pathOf, readBundle } from './bundle.mjs';
import * as checks from './checks.mjs';

const commands = {
  loadDylib: 0xc,
  codeSignature: 0x1d,
  linkerHints: 0x2e, // of the same layout as the two after it, and without meaning to the loader
  buildVersion: 0x32,
  loadWeakDylib: 0x80000018,
  chainedFixups: 0x80000034,
};
const headerSize = 32;

/** Where the first load command of a kind stands in the file. */
function findCommand(bytes, kind) {
  let at = headerSize;
  for (let left = bytes.readUInt32LE(16); left > 0; --left) {
    if (bytes.readUInt32LE(at) === kind) return at;
    at += bytes.readUInt32LE(at + 4);
  }
  throw new Error(`no load command ${kind}`);
}

function setCommand(bytes, kind, newKind) {
  bytes.writeUInt32LE(newKind, findCommand(bytes, kind));
}

/** Replaces each occurrence of a text by one of the same length. */
function replaceText(bytes, text, replacement) {
  assert.equal(text.length, replacement.length);
  let at = bytes.indexOf(text);
  assert.notEqual(at, -1, `the bundle does not hold ${text}`);
  for (; at !== -1; at = bytes.indexOf(text, at + 1)) bytes.write(replacement, at, 'latin1');
}

/** Changes what the loader reads of one import: the library's ordinal, and whether it is weak. */
function changeImport(bytes, name, { ordinal, weak }) {
  const fixups = bytes.readUInt32LE(findCommand(bytes, commands.chainedFixups) + 8);
  const imports = fixups + bytes.readUInt32LE(fixups + 8);
  const names = fixups + bytes.readUInt32LE(fixups + 12);
  const wanted = Buffer.from(`${name}\0`, 'latin1');
  for (let index = 0; index < bytes.readUInt32LE(fixups + 16); ++index) {
    const at = imports + 4 * index;
    const start = names + (bytes.readUInt32LE(at) >>> 9);
    if (!bytes.subarray(start, start + wanted.length).equals(wanted)) continue;
    if (ordinal !== undefined) bytes.writeInt8(ordinal, at);
    if (weak !== undefined) bytes[at + 1] = (bytes[at + 1] & ~1) | Number(weak);
    return;
  }
  throw new Error(`no import ${name}`);
}

const anyImage = -2;
const libraryOf = { appKit: 1, libSystem: 9 };

const faults = [
  ['an x86-64 file', checks.checkFileKind, (b) => b.writeUInt32LE(0x01000007, 4), /processor/],
  ['a program', checks.checkFileKind, (b) => b.writeUInt32LE(2, 12), /kind of file is EXECUTE/],
  [
    'imports without a library',
    checks.checkFileKind,
    (b) => b.writeUInt32LE(b.readUInt32LE(24) & ~0x80, 24),
    /do not name their library/,
  ],
  [
    'an entry point of another name',
    checks.checkExports,
    (b) => replaceText(b, 'api_register_module', 'api_renamed__module'),
    /unexpected export: napi_renamed__module_v1,missing export: napi_register_module_v1/,
  ],
  [
    'Node-API version 9',
    checks.checkNodeApiVersion,
    (b, { exports }) =>
      b.writeUInt32LE(0x52800120, exports.get('node_api_module_get_api_version_v1')),
    /version is 9/,
  ],
  [
    'a version function that does something else',
    checks.checkNodeApiVersion,
    (b, { exports }) =>
      b.writeUInt32LE(0xd503201f, exports.get('node_api_module_get_api_version_v1')),
    /more than return/,
  ],
  [
    'macOS 15.0 as the oldest system',
    checks.checkSystemVersion,
    (b) => b.writeUInt32LE(15 << 16, findCommand(b, commands.buildVersion) + 12),
    /oldest system is 15/,
  ],
  [
    'the SDK of macOS 13.0',
    checks.checkSystemVersion,
    (b) => b.writeUInt32LE(13 << 16, findCommand(b, commands.buildVersion) + 16),
    /SDK is 13/,
  ],
  [
    'another platform',
    checks.checkSystemVersion,
    (b) => b.writeUInt32LE(2, findCommand(b, commands.buildVersion) + 8),
    /platform is ios/,
  ],
  [
    'ScreenCaptureKit loaded strongly',
    checks.checkLibraries,
    (b) => setCommand(b, commands.loadWeakDylib, commands.loadDylib),
    /ScreenCaptureKit is loaded by LC_LOAD_DYLIB/,
  ],
  [
    'another library loaded weakly',
    checks.checkLibraries,
    (b) => setCommand(b, commands.loadDylib, commands.loadWeakDylib),
    /AppKit is loaded by LC_LOAD_WEAK_DYLIB/,
  ],
  [
    'a library that is not listed',
    checks.checkLibraries,
    (b) => replaceText(b, 'C/AppKit', 'C/AppKat'),
    /unexpected library: .*AppKat,missing library: .*AppKit/,
  ],
  [
    'an import that is not listed',
    checks.checkImports,
    (b) => replaceText(b, '_CGMainDisplayID', '_CGSomeDisplayID'),
    /unexpected import: CGSomeDisplayID from .*,missing import: CGMainDisplayID/,
  ],
  [
    'an import from another library',
    checks.checkImports,
    (b) => changeImport(b, '_CGMainDisplayID', { ordinal: libraryOf.appKit }),
    /unexpected import: CGMainDisplayID from .*AppKit/,
  ],
  [
    'an import from any library',
    checks.checkImports,
    (b) => changeImport(b, '_memcpy', { ordinal: anyImage }),
    /unexpected import: memcpy from any/,
  ],
  [
    'a Node-API function from a library',
    checks.checkImports,
    (b) => changeImport(b, '_napi_create_object', { ordinal: libraryOf.libSystem }),
    /napi_create_object is from .*libSystem/,
  ],
  [
    'a Node-API function that version 8 lacks',
    checks.checkImports,
    (b) => replaceText(b, '_napi_create_object\0', '_napi_create_futura\0'),
    /unexpected import: napi_create_futura from any/,
  ],
  [
    'an operator new that a program cannot replace',
    checks.checkImports,
    (b) => changeImport(b, '__Znwm', { ordinal: libraryOf.libSystem }),
    /_Znwm is not replaceable/,
  ],
  [
    'a class of ScreenCaptureKit imported strongly',
    checks.checkImports,
    (b) => changeImport(b, '_OBJC_CLASS_$_SCContentFilter', { weak: false }),
    /SCContentFilter is not imported weakly/,
  ],
  [
    'a message that is not listed',
    checks.checkSelectors,
    (b) => replaceText(b, 'backingScaleFactor\0', 'backingSkaleFactor\0'),
    /unexpected selector: backingSkaleFactor,missing selector: backingScaleFactor/,
  ],
  [
    'no chained fixups',
    checks.checkFixups,
    (b) => setCommand(b, commands.chainedFixups, commands.linkerHints),
    /no chained fixups/,
  ],
  [
    'no signature',
    checks.checkSignature,
    (b) => setCommand(b, commands.codeSignature, commands.linkerHints),
    /no code signature/,
  ],
  [
    'one byte changed after signing',
    checks.checkSignature,
    (b) => (b[0x5000] ^= 1),
    /^the hash of page 5 is wrong$/,
  ],
  [
    'a path of the machine that built it',
    checks.checkPaths,
    (b) => replaceText(b, 'captureRegion(exclude', '/home/someone/project'),
    /a path: \/home\/someone\/project/,
  ],
];

describe('a bundle with', () => {
  let folder;
  let intact;
  before(() => {
    folder = fs.mkdtempSync(path.join(os.tmpdir(), 'deskhand-bundle-'));
    intact = readBundle(pathOf('deskhand.node'), 'deskhand.node');
  });
  after(() => fs.rmSync(folder, { recursive: true, force: true }));

  for (const [fault, check, damage, problem] of faults) {
    test(`${fault} is found out`, () => {
      const bytes = Buffer.from(intact.bytes);
      damage(bytes, intact);
      const file = path.join(folder, 'damaged.node');
      fs.writeFileSync(file, bytes);
      assert.match(check(readBundle(file, 'deskhand.node')).join(), problem);
    });
  }
});
