'use strict';
// Threads and processes that end while captures are in flight, or calls throw: no crash, no leak, no
// endless wait.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { runScript, spawnScript } = require('./child');
const { scene } = require('./harness');

// Under sanitizers a thread takes half a second to start.
const rounds = process.env.DESKHAND_SANITIZED ? 4 : 20;

for (const moment of ['main queue stalled', 'content late', 'image late', 'image at once',
  'gathering late', 'opening late']) {
  test(`a worker thread may be terminated with promises in flight: ${moment}`, async () => {
    const { asked, clean, leftovers, violations } =
      await runScript('terminate_workers.js', moment, String(rounds));
    assert.equal(asked, 3 * rounds);
    assert.deepEqual(violations, []);
    assert.ok(clean, JSON.stringify(leftovers));
  });
}

test('a worker thread may be terminated in the middle of calls that throw', async () => {
  assert.deepEqual(await runScript('terminate_throwing.js', String(rounds)),
    { rounds, objects: {}, pools: 0, violations: [] });
});

// Ten seconds last this long here, and a process whose capture is stuck no longer than that. Besides,
// one under sanitizers takes seconds to begin and to end; one that hangs is killed after a minute.
const timeoutMs = 500;
const startUpMs = 30_000;

for (const where of ['main queue', 'content', 'image', 'nowhere']) {
  test(`process.exit with captures stuck in ${where} ends in bounded time, with its own code`,
    async () => {
      const { code, signal, stdout, stderr, ms } =
        await spawnScript('exit_midway.js', [where, String(timeoutMs / 10_000)]);
      assert.deepEqual({ code, signal, stdout, stderr },
        { code: 7, signal: null, stdout: '', stderr: '' });
      assert.ok(ms < timeoutMs + startUpMs, `${ms} ms`);
    });
}

test('a process with a capture in flight lives until it has settled', async () => {
  assert.deepEqual(await runScript('end_by_itself.js'), { width: 1372 });
});

test('hundreds of queries and openings leave nothing behind', async (t) => {
  const mac = scene(t, {
    locations: { 'com.a': '/A.app' }, bundles: { '/A.app': { bundleId: 'com.a' } },
    query: { results: [{ path: '/A.app', displayName: 'A' }] },
  });
  for (let round = 0; round < 100; ++round) {
    const [apps, isOpen, isOtherOpen] = await Promise.all([
      mac.addon.listInstalledApps(), mac.addon.openApp('com.a'), mac.addon.openApp('com.b'),
    ]);
    assert.deepEqual([apps.length, isOpen, isOtherOpen], [1, true, false]);
  }
});

test('hundreds of captures leave nothing behind', async (t) => {
  const mac = scene(t, { content: { applications: [{ bundleId: 'com.a' }] } });
  for (let round = 0; round < 100; ++round) {
    await Promise.all([
      mac.addon.captureDisplay(['com.a']),
      mac.addon.captureRegion(['com.a'], 0, 0, 10, 10, 20, 20),
      mac.addon.captureDisplay([], NaN, 77),
    ]);
    mac.addon.listDisplays();
    mac.addon.getDisplaySize(2);
  }
});
