// What is said when the addon cannot be loaded: from recorded texts of the loaders, and from failures that
// are made here.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import { createRequire } from 'node:module';
import os from 'node:os';
import path from 'node:path';
import { describe, test } from 'node:test';
import { fileURLToPath } from 'node:url';

const root = path.join(path.dirname(fileURLToPath(import.meta.url)), '..', '..');
const require = createRequire(import.meta.url);
const { load } = require('../../lib/load.js');
const { explainFailure } = require('../../lib/load_failure.js');
const { ALL_PACKAGES, packageOf } = require('../../lib/debian_packages.js');

const FILE = '/app/node_modules/deskhand/prebuilds/here/deskhand.node';
const LINUX = { platform: 'linux', arch: 'x64', format: 'ELF', glibc: '2.36' };
const MAC = { platform: 'darwin', arch: 'arm64', format: 'Mach-O' };

/** What is said of a binary that is right, but about which the loader says `message`. */
function explain({ platform, arch, format, glibc }, message) {
  return explainFailure({
    ...{ platform, arch, versions: { node: '20.20.2', napi: '9', glibc }, folder: '/app/deskhand' },
    failures: [{ file: FILE, binary: { format, arch, isWhole: true }, message }],
  });
}

/** What is said where no file is there. */
function explainAbsence(platform, arch, versions = {}) {
  return explainFailure({
    ...{
      platform,
      arch,
      folder: '/app/deskhand',
      failures: [{ file: FILE, binary: null, message: '' }],
    },
    versions: { node: '20.20.2', napi: '9', glibc: '2.36', ...versions },
  });
}

/** Each: where, what its loader says, what is to be said of the file, what is to be done. */
const RECORDED = {
  'a missing library that Debian has': [
    LINUX,
    'libxcb-res.so.0: cannot open shared object file: No such file or directory',
    /shared library libxcb-res\.so\.0 is missing/,
    /libxcb-res\.so\.0 is in the package libxcb-res0\..*apt-get install -y .*libxkbcommon0/,
  ],
  'a missing library that nobody knows': [
    LINUX,
    'libodd.so.3: cannot open shared object file: No such file or directory',
    /shared library libodd\.so\.3 is missing/,
    /package of your distribution that has libodd\.so\.3/,
  ],
  'a missing library on a system without the GNU C library': [
    { ...LINUX, glibc: undefined },
    `Error loading shared library ld-linux-x86-64.so.2: No such file or directory (needed by ${FILE})`,
    /shared library ld-linux-x86-64\.so\.2 is missing/,
    /GNU C library, such as Debian/,
  ],
  'a C library that is too old': [
    LINUX,
    `/lib/x86_64-linux-gnu/libc.so.6: version \`GLIBC_2.38' not found (required by ${FILE})`,
    /libc\.so\.6 is too old here: GLIBC_2\.38 is needed/,
    /newer Linux distribution/,
  ],
  'a C++ library that is too old': [
    LINUX,
    `/lib/x86_64-linux-gnu/libstdc++.so.6: version \`GLIBCXX_3.4.30' not found (required by ${FILE})`,
    /libstdc\+\+\.so\.6 is too old here: GLIBCXX_3\.4\.30 is needed/,
    /newer Linux distribution/,
  ],
  'a host without a function of Node-API': [
    LINUX,
    `${FILE}: undefined symbol: node_api_symbol_for`,
    /has no node_api_symbol_for/,
    /Node\.js 18 or later/,
  ],
  'a file system from which nothing may be run': [
    LINUX,
    `${FILE}: failed to map segment from shared object`,
    /does not let code be run from there/,
    /"noexec"/,
  ],
  'an unsigned binary': [
    MAC,
    `dlopen(${FILE}, 0x0001): tried: '${FILE}' (code signature in <5B2C0B7E-1F3A-3C44-9D5E-0A1B2C3D4E5F> ` +
      `'${FILE}' not valid for use in process: mapped file has no cdhash, completely unsigned? Code has to be ` +
      'at least ad-hoc signed.)',
    /it is not signed/,
    /codesign --force --sign - "\/app/,
  ],
  'a binary whose signature is broken': [
    MAC,
    `dlopen(${FILE}, 0x0001): tried: '${FILE}' (code signature invalid (errno=1) sliceOffset=0x00000000, ` +
      `codeBlobOffset=0x000342A0, codeBlobSize=0x000019C0 for '${FILE}')`,
    /its signature does not fit it/,
    /codesign --force --sign -/,
  ],
  'a binary that another team signed': [
    MAC,
    `dlopen(${FILE}, 0x0001): tried: '${FILE}' (code signature in <5B2C0B7E-1F3A-3C44-9D5E-0A1B2C3D4E5F> ` +
      `'${FILE}' not valid for use in process: mapping process and mapped file (non-platform) have different ` +
      'Team IDs)',
    /not signed by the team/,
    /--sign <identity>.*disable-library-validation/,
  ],
  'a binary in quarantine': [
    MAC,
    `dlopen(${FILE}, 0x0001): tried: '${FILE}' (code signature in <5B2C0B7E-1F3A-3C44-9D5E-0A1B2C3D4E5F> ` +
      `'${FILE}' not valid for use in process: library load disallowed by system policy)`,
    /quarantine/,
    /xattr -d com\.apple\.quarantine "\/app/,
  ],
  'a macOS that is too old': [
    MAC,
    `dlopen(${FILE}, 0x0001): Symbol not found: _OBJC_CLASS_$_SCScreenshotManager\n  Referenced from: <0> ${FILE}`,
    /does not have _OBJC_CLASS_\$_SCScreenshotManager/,
    /version 14 or later/,
  ],
  'a macOS without a framework': [
    MAC,
    `dlopen(${FILE}, 0x0001): Library not loaded: /System/Library/Frameworks/Some.framework/Some\n  Reason: tried`,
    /does not have \/System\/Library\/Frameworks\/Some\.framework\/Some/,
    /version 14 or later/,
  ],
};

describe('of recorded texts', () => {
  for (const [title, [where, text, reason, advice]] of Object.entries(RECORDED)) {
    test(title, () => {
      const { message, hint } = explain(where, text);
      const [, , tried] = message.split('\n');
      assert.ok(tried.startsWith(`  ${FILE}: `), tried);
      assert.match(tried, reason);
      assert.match(hint, advice);
      assert.ok(message.endsWith(hint.replace(/^/gm, '  ')), 'the message ends with what to do');
    });
  }

  test('what nobody has foreseen is passed on as it is', () => {
    const { message } = explain(LINUX, 'the moon is full\nand more');
    assert.match(message, /deskhand\.node: the moon is full\n/);
  });

  test('two missing libraries are told once what to install', () => {
    const { hint } = explainFailure({
      ...{
        platform: 'linux',
        arch: 'x64',
        folder: '/app',
        versions: { node: '20.0.0', napi: '9', glibc: '2.36' },
      },
      failures: ['/one', '/two'].map((file) => ({
        file,
        binary: { format: 'ELF', arch: 'x64', isWhole: true },
        message: 'libxcb.so.1: cannot open shared object file: No such file or directory',
      })),
    });
    assert.equal(hint.split('\n').length, 1);
  });
});

describe('where there is no binary', () => {
  test('a system that is supported has an incomplete package', () => {
    const { message, hint } = explainAbsence('linux', 'x64');
    assert.match(message, /on linux-x64 \(Node\.js 20\.20\.2, glibc 2\.36\)/);
    assert.match(message, /there is no such file/);
    assert.match(
      hint,
      /Install deskhand again: \/app\/deskhand is not complete.*npm run build.*bundler/,
    );
  });

  test('systems and processors that are not supported are told so', () => {
    for (const [platform, arch] of [
      ['win32', 'x64'],
      ['linux', 'ia32'],
      ['freebsd', 'x64'],
    ]) {
      const { hint } = explainAbsence(platform, arch);
      assert.match(hint, new RegExp(`made for: .*linux-x64.* This is ${platform}-${arch}\\.`));
    }
  });

  test('Node.js for Intel on a Mac is told about Rosetta', () => {
    assert.match(explainAbsence('darwin', 'x64').hint, /Apple silicon \(arm64\).*Rosetta/);
  });

  test('Node.js that is too old is told which one is needed', () => {
    for (const versions of [
      { node: '16.20.2', napi: '8' },
      { node: '10.24.1', napi: '7' },
    ]) {
      const { hint } = explainAbsence('linux', 'x64', versions);
      assert.match(hint, /^Use Node\.js 18 or later; this is 1[06]\./);
    }
  });
});

/** A folder that is gone when the test ends. */
function temporaryFolder(t) {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'deskhand-test-'));
  t.after(() => fs.rmSync(folder, { recursive: true, force: true }));
  return folder;
}

/** The error of loading a file with these bytes. */
function failureOf(t, bytes) {
  const file = path.join(temporaryFolder(t), 'deskhand.node');
  fs.writeFileSync(file, bytes);
  return failureToLoad(file);
}

function failureToLoad(file) {
  try {
    load([file]);
  } catch (error) {
    assert.equal(error.code, 'ERR_DESKHAND_LOAD');
    assert.ok(error.cause instanceof Error, 'the first failure is the cause');
    assert.ok(error.message.includes(file), error.message);
    return error;
  }
  throw new Error(`${file} was loaded`);
}

/** A library of our own, built from lines of C. */
function compile(folder, name, source, ...args) {
  fs.writeFileSync(path.join(folder, `${name}.c`), source);
  execFileSync('cc', ['-shared', '-fPIC', '-o', name, `${name}.c`, ...args], { cwd: folder });
  return path.join(folder, name);
}

/** The 64 bytes of the header of an ELF file for another processor, big enough to be whole. */
function elfHeader(machine) {
  const header = Buffer.alloc(64);
  header.write('\x7fELF\x02\x01\x01', 'latin1');
  header.writeUInt16LE(3, 16);
  header.writeUInt16LE(machine, 18);
  header.writeUInt16LE(64, 58);
  return header;
}

const onLinux = { skip: process.platform !== 'linux' || process.arch !== 'x64' };

describe('of failures that are made', onLinux, () => {
  const whole = () => fs.readFileSync(path.join(root, 'build', 'release', 'deskhand.node'));

  test('the addon itself loads', () => {
    assert.equal(
      Object.keys(load([path.join(root, 'build', 'release', 'deskhand.node')])).length,
      30,
    );
  });

  test('a binary for another processor', (t) => {
    const { message, hint } = failureOf(t, elfHeader(183));
    assert.match(message, /made for another system or processor \(ELF, arm64\)/);
    assert.match(hint, /copied from another system/);
  });

  test('a binary for another system', (t) => {
    const bytes = Buffer.alloc(64);
    bytes.writeUInt32LE(0xfeedfacf, 0);
    bytes.writeUInt32LE(0x0100000c, 4);
    assert.match(
      failureOf(t, bytes).message,
      /made for another system or processor \(Mach-O, arm64\)/,
    );
  });

  test('a binary that was cut off, anywhere', (t) => {
    const bytes = whole();
    for (const length of [0, 10, 40, 63, 64, 5000, bytes.length - 1]) {
      assert.match(
        failureOf(t, bytes.subarray(0, length)).message,
        /empty or cut off/,
        `${length} bytes`,
      );
    }
  });

  test('a text in place of a binary', (t) => {
    const { message } = failureOf(t, 'version 1 of a pointer to a large file\n'.repeat(5));
    assert.match(message, /not a binary, or a damaged one/);
  });

  test('a library that is not there', (t) => {
    const folder = temporaryFolder(t);
    compile(folder, 'libgone.so.7', 'int gone(void) { return 1; }', '-Wl,-soname,libgone.so.7');
    const file = compile(
      folder,
      'a.node',
      'int gone(void); int use(void) { return gone(); }',
      './libgone.so.7',
    );
    fs.rmSync(path.join(folder, 'libgone.so.7'));
    assert.match(failureToLoad(file).message, /the shared library libgone\.so\.7 is missing/);
  });

  test('a C library that is too old', (t) => {
    const folder = temporaryFolder(t);
    fs.writeFileSync(path.join(folder, 'map'), 'GLIBC_2.99 { newer; };\n');
    const versioned = ['-Wl,--version-script=map', '-Wl,-soname,libc.so.6'];
    compile(folder, 'libnewer.so', 'int newer(void) { return 1; }', ...versioned);
    const source = 'int newer(void); int use(void) { return newer(); }';
    const file = compile(folder, 'a.node', source, './libnewer.so', '-nostdlib');
    assert.match(failureToLoad(file).message, /libc\.so\.6 is too old here: GLIBC_2\.99 is needed/);
  });

  test('a host without a function of Node-API', (t) => {
    const source = 'int napi_not_yet(void); int use(void) { return napi_not_yet(); }';
    const file = compile(temporaryFolder(t), 'a.node', source, '-Wl,-z,now');
    assert.match(failureToLoad(file).message, /has no napi_not_yet/);
  });

  test('a package without binaries, by its front door', (t) => {
    const folder = temporaryFolder(t);
    fs.cpSync(path.join(root, 'lib'), path.join(folder, 'lib'), { recursive: true });
    assert.throws(
      () => require(path.join(folder, 'lib', 'index.js')),
      (error) => {
        assert.equal(error.code, 'ERR_DESKHAND_LOAD');
        assert.match(error.message, /prebuilds.linux-x64.deskhand\.node: there is no such file/);
        assert.match(error.message, /build.release.deskhand\.node: there is no such file/);
        assert.match(error.hint, /is not complete/);
        return true;
      },
    );
  });

  test('the first binary that loads is taken, whatever the ones before it are', (t) => {
    const broken = path.join(temporaryFolder(t), 'deskhand.node');
    fs.writeFileSync(broken, elfHeader(183));
    const good = path.join(root, 'build', 'release', 'deskhand.node');
    assert.equal(load(['/nowhere/deskhand.node', broken, good]), require(good));
  });

  test('Node.js that is too old is refused before anything is tried', () => {
    const script = `
      Object.defineProperty(process, 'versions', { value: { ...process.versions, node: '16.20.2', napi: '8' } });
      process.dlopen = () => { throw new Error('tried'); };
      try { require(${JSON.stringify(root)}); } catch (error) { console.log(error.message); }`;
    const message = execFileSync(process.execPath, ['-e', script], { encoding: 'utf8' });
    assert.match(message, /It needs Node\.js 18 or later/);
    assert.doesNotMatch(message, /Tried/);
  });
});

test(
  'every library that a binary needs has its package named, and these have it',
  onLinux,
  () => {
    const built = path.join(root, 'build', 'release');
    const run = (...words) => execFileSync(words[0], words.slice(1), { encoding: 'utf8' });
    const librariesOf = (binary) =>
      [...run('readelf', '--dynamic', '--wide', binary).matchAll(/NEEDED.*\[(.+)\]/g)]
        .map(([, name]) => name)
        .filter((name) => !/^(libc|libm|ld-linux.*)\.so/.test(name));
    const libraries = librariesOf(path.join(built, 'deskhand.node'));
    assert.ok(libraries.length > 5);
    for (const name of libraries) {
      assert.ok(packageOf(name), `${name} is in no package that we know`);
      assert.match(
        run('dpkg', '--search', `*/${name}`),
        new RegExp(`^${packageOf(name).replace(/\+/g, '\\+')}:`, 'm'),
      );
    }
    const ofNode = new Set(['libgcc-s1', 'libstdc++6']);
    const published = librariesOf(path.join(built, 'published', 'deskhand.node')).map(packageOf);
    const toInstall = new Set(published.filter((name) => !ofNode.has(name)));
    assert.deepEqual(ALL_PACKAGES, [...toInstall].sort());
  },
);
