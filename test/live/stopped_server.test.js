'use strict';

// Servers that keep their connections and answer nothing: every call ends all the same.
const assert = require('node:assert/strict');
const { describe, test } = require('node:test');
const { startDesktop } = require('../support/desktop.js');
const { startHost } = require('../support/host.js');
const { assertColour, decode } = require('../support/picture.js');

const RED = '#c02020';
const CAPTURE_BOUND_MS = 10_000; // what a caller is promised
const QUESTION_BOUND_MS = 3000;

/** The time that `action` takes, in milliseconds. */
async function timeOf(action) {
  const start = performance.now();
  await action();
  return performance.now() - start;
}

async function assertEndsWithin(boundMs, action) {
  const taken = await timeOf(action);
  assert.ok(taken < boundMs, `took ${Math.round(taken)} ms`);
}

/** A desktop in red whose host has a connection. */
async function connectedDesktop(t) {
  const desktop = await startDesktop(t);
  await desktop.painter.window('all', { x: 0, y: 0, width: 1280, height: 800, colour: RED });
  await assertWorks(desktop.addon);
  return desktop;
}

async function assertWorks(addon) {
  assert.equal((await addon.listDisplays()).length, 1);
  const picture = await decode((await addon.captureDisplay([])).base64);
  assertColour(picture, 100, 100, RED);
}

// They mostly wait, and all at once.
describe('a server that stops', { concurrency: 8 }, () => {
  for (const [name, capture] of Object.entries({
    Screenshot: (addon) => addon.captureDisplay([]),
    Region: (addon) => addon.captureRegion([], 0, 0, 100, 100, 100, 100),
  })) {
    test(`after it was used fails a ${name.toLowerCase()} in bounded time, and works again when \
it goes on`, async (t) => {
      const { addon, server } = await connectedDesktop(t);
      await server.pause();
      await assertEndsWithin(CAPTURE_BOUND_MS, () =>
        assert.rejects(capture(addon), {
          outcome: 'rejected',
          name: 'Error',
          message: `${name} capture failed: the X server at '${server.display}' does not answer`,
        }),
      );
      server.resume();
      await assertWorks(addon);
    });

    test(`before it was used fails a ${name.toLowerCase()} in bounded time, and works when it \
goes on`, async (t) => {
      const { server, env, painter } = await startDesktop(t);
      await painter.window('all', { x: 0, y: 0, width: 1280, height: 800, colour: RED });
      const { addon } = startHost(t, env);
      await server.pause();
      await assertEndsWithin(CAPTURE_BOUND_MS, () =>
        assert.rejects(capture(addon), {
          outcome: 'rejected',
          name: 'Error',
          message: `Failed to get shareable content: the X server at '${server.display}' does not \
answer`,
        }),
      );
      server.resume();
      await assertWorks(addon);
    });
  }

  test('is no displays within the time that the JavaScript thread may wait', async (t) => {
    const { addon, server, env } = await connectedDesktop(t);
    const fresh = startHost(t, env);
    await server.pause();
    for (const asked of [addon, fresh.addon]) {
      await assertEndsWithin(QUESTION_BOUND_MS, async () =>
        assert.deepEqual(await asked.listDisplays(), []),
      );
      await assertEndsWithin(QUESTION_BOUND_MS, async () =>
        assert.equal((await asked.getDisplaySize()).width, 0),
      );
    }
    server.resume();
    await assertWorks(addon);
    await assertWorks(fresh.addon);
  });

  test('with eight captures under way fails them all in bounded time', async (t) => {
    const { addon, server } = await connectedDesktop(t);
    await server.pause();
    const captures = Array.from({ length: 8 }, () => addon.captureDisplay([]));
    const flight = Promise.allSettled(captures);
    await assertEndsWithin(CAPTURE_BOUND_MS, async () => {
      for (const { status, reason } of await flight) {
        assert.equal(status, 'rejected');
        assert.match(reason.message, /the X server at '.*' does not answer$/);
      }
    });
    server.resume();
    await assertWorks(addon);
  });

  test('does not keep questions waiting behind captures', async (t) => {
    const { addon, server } = await connectedDesktop(t);
    await server.pause();
    const capture = assert.rejects(addon.captureDisplay([]));
    await assertEndsWithin(QUESTION_BOUND_MS, async () =>
      assert.deepEqual(await addon.listDisplays(), []),
    );
    await capture;
  });
});
