'use strict';

// The recipe of docs/containers.md.
const assert = require('node:assert/strict');
const { execFileSync, spawnSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { root } = require('../support/examples.js');
const { temporaryFolder } = require('../support/painter.js');
const { codeOf } = require('../support/pages.js');
const { decode } = require('../support/picture.js');
const { hasExited, start } = require('../support/processes.js');
const { until } = require('../support/until.js');

const PAGE = 'containers.md';
const BINARY = path.join(root, 'build', 'release', 'published', 'deskhand.node');

/** What comes with Node.js or with every Debian. */
const ALWAYS_THERE = ['libc6', 'libgcc-s1', 'libstdc++6'];

const [dockerfile] = codeOf(PAGE, 'dockerfile');
const [startDesktop] = codeOf(PAGE, 'sh');
const [app] = codeOf(PAGE, 'js');
const packages = /install --no-install-recommends -y ([^&]*)&&/
  .exec(dockerfile.replace(/\\\n/g, ''))[1]
  .trim()
  .split(/\s+/);

function run(command, ...args) {
  return execFileSync(command, args, { encoding: 'utf8', stdio: ['ignore', 'pipe', 'ignore'] });
}

/** The Debian packages that files are of; libraries may lie below /usr without being listed there. */
function packagesWith(files) {
  const places = files.flatMap((file) => [file, fs.realpathSync(file)]);
  const all = new Set(places.flatMap((name) => [name, name.replace(/^\/usr/, '')]));
  // Its status is that of the places where nothing is listed.
  const { stdout } = spawnSync('dpkg', ['-S', ...all], { encoding: 'utf8' });
  return stdout.split('\n').filter(Boolean).map((line) => line.split(':')[0]);
}

/** The packages of the libraries that a binary names itself. */
function packagesOf(binary) {
  const dynamic = run('readelf', '--dynamic', '--wide', binary);
  const needed = [...dynamic.matchAll(/NEEDED.*\[(.+)\]/g)].map(([, name]) => name);
  const places = new Map(
    [...run('ldd', binary).matchAll(/^\s*(\S+) => (\/\S+)/gm)].map(([, name, file]) => [name, file]),
  );
  const files = needed.filter((name) => places.has(name)).map((name) => places.get(name));
  const found = new Set(packagesWith(files));
  return [...found].filter((name) => !ALWAYS_THERE.includes(name)).sort();
}

/** A folder with the files of the recipe. */
function unpackRecipe(t) {
  const folder = temporaryFolder(t);
  fs.writeFileSync(path.join(folder, 'start-desktop'), startDesktop);
  fs.writeFileSync(path.join(folder, 'app.js'), app);
  return folder;
}

test('the libraries to install are those that the binary is linked with', () => {
  const libraries = packages.filter((name) => name.startsWith('lib'));
  assert.deepEqual(libraries.sort(), packagesOf(BINARY));
});

test('every package is one that Debian has', () => {
  for (const name of packages) {
    const status = run('dpkg-query', '--show', '--showformat=${db:Status-Status}', name);
    assert.equal(status, 'installed', name);
  }
});

/** Runs the recipe's program by a command; it has typed, and taken a picture of what it did. */
async function assertWorks(t, folder, env, command, args) {
  const child = start(t, command, args, { env });
  await until(() => hasExited(child), 'the program has ended', { timeoutMs: 60_000 });
  assert.equal(child.exitCode, 0, child.errors());
  assert.equal(fs.readFileSync(path.join(folder, 'hello.txt'), 'utf8'), 'hello from a container\n');
  const picture = await decode(fs.readFileSync(path.join(folder, 'screen.jpg')).toString('base64'));
  assert.deepEqual([picture.width, picture.height], [1280, 800]);
  const isLight = (n) => Math.min(...picture.rgb.subarray(n, n + 3)) > 220;
  let light = 0;
  for (let n = 0; n < picture.rgb.length; n += 3) if (isLight(n)) ++light;
  assert.ok(light > 100_000, `a terminal is in the picture: ${light} light pixels`);
}

test('start-desktop gives a program a desktop, on which it opens, types and sees', async (t) => {
  const folder = unpackRecipe(t);
  fs.mkdirSync(path.join(folder, 'node_modules'));
  fs.symlinkSync(root, path.join(folder, 'node_modules', 'deskhand'));
  // The shell in the terminal is to be nobody's in particular, and to write nothing at its end.
  const { DISPLAY, ...env } = { ...process.env, HOME: folder, HISTFILE: '/dev/null' };
  const words = ['-C', folder, 'sh', 'start-desktop', process.execPath, 'app.js'];
  await assertWorks(t, folder, env, 'env', words);
});

/** Why the recipe cannot be tried in a Debian of its own; undefined when it can. */
function whyNoDebian() {
  if (!process.env.DESKHAND_FULL) return 'takes minutes and needs the network: DESKHAND_FULL=1';
  if (process.getuid() !== 0) return 'only root can unpack a Debian';
  const missing = ['debootstrap', 'bwrap'].filter((name) => spawnSync(name, ['--version']).error);
  return missing.length > 0 ? `install ${missing.join(' and ')}` : undefined;
}

test('the recipe works in an empty Debian', { skip: whyNoDebian() }, async (t) => {
  const debian = path.join(temporaryFolder(t), 'root');
  const mirror = 'http://deb.debian.org/debian';
  run('debootstrap', '--variant=minbase', 'bookworm', debian, mirror);
  const inside = [
    ...['--bind', debian, '/', '--proc', '/proc', '--dev', '/dev'],
    ...['--ro-bind', '/etc/resolv.conf', '/etc/resolv.conf'],
    ...['--unshare-pid', '--unshare-ipc', '--die-with-parent', '--clearenv'],
    ...['--setenv', 'PATH', '/usr/sbin:/usr/bin:/sbin:/bin', '--setenv', 'HOME', '/root'],
    ...['--setenv', 'DEBIAN_FRONTEND', 'noninteractive'],
  ];
  run('bwrap', ...inside, 'apt-get', 'update');
  const install = ['apt-get', 'install', '--no-install-recommends', '-y', 'nodejs'];
  run('bwrap', ...inside, ...install, ...packages);

  const folder = path.join(debian, 'app');
  fs.cpSync(unpackRecipe(t), folder, { recursive: true });
  const installed = path.join(folder, 'node_modules', 'deskhand');
  for (const name of ['package.json', 'lib', path.relative(root, BINARY)]) {
    fs.cpSync(path.join(root, name), path.join(installed, name), { recursive: true });
  }
  const words = [...inside, '--chdir', '/app', 'sh', '/app/start-desktop', 'node', 'app.js'];
  await assertWorks(t, folder, process.env, 'bwrap', words);
});
