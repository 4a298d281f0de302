// The structure of the macOS bundles. Build them first: scripts/build-darwin.
import assert from 'node:assert/strict';
import fs from 'node:fs';
import { before, describe, test } from 'node:test';

import { pathOf, readBundle } from './bundle.mjs';
import * as checks from './checks.mjs';
import { bundles } from './expected.mjs';

for (const name of Object.keys(bundles)) {
  describe(`the macOS bundle ${name}`, () => {
    let bundle;
    before(() => {
      assert.ok(fs.existsSync(pathOf(name)), 'there is no bundle: run scripts/build-darwin');
      bundle = readBundle(pathOf(name), name);
    });

    const clean = (check) => assert.deepEqual(check(bundle), []);

    test('is a bundle for 64-bit Arm', () => clean(checks.checkFileKind));
    test('exports the listed entry points and nothing else', () => clean(checks.checkExports));
    test('says that it needs Node-API version 8', () => clean(checks.checkNodeApiVersion));
    test('is for macOS 14.0 and later', () => clean(checks.checkSystemVersion));
    test('loads the listed libraries, ScreenCaptureKit alone weakly', () =>
      clean(checks.checkLibraries));
    test('imports the listed symbols from the listed libraries', () => clean(checks.checkImports));
    test('sends the listed messages', () => clean(checks.checkSelectors));
    test('has chained fixups', () => clean(checks.checkFixups));
    test('is signed ad hoc, and each of its pages is as signed', () =>
      clean(checks.checkSignature));
    test('holds no path of the machine that built it', () => clean(checks.checkPaths));
  });
}
