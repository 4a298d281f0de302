'use strict';

// The memory that the server writes pictures into.
const assert = require('node:assert/strict');
const { readFileSync } = require('node:fs');
const { test } = require('node:test');
const { startDesktop } = require('../support/desktop.js');
const { until } = require('../support/until.js');

/** Sizes of the blocks for pictures that a process has mapped, in bytes. */
function pictureBlocks(pid) {
  const lines = readFileSync(`/proc/${pid}/maps`, 'utf8').split('\n');
  return lines
    .filter((line) => line.includes('memfd:deskhand-picture'))
    .map((line) => line.split(' ')[0].split('-').map((address) => parseInt(address, 16)))
    .map(([start, end]) => end - start);
}

test('a larger block takes the place of a smaller one, in the server too', async (t) => {
  const { addon, server } = await startDesktop(t, { screen: '1280x720x24' });
  for (const [width, height] of [[100, 100], [400, 300], [1280, 720], [50, 50]]) {
    await addon.captureRegion([], 0, 0, width, height, 64, 64);
  }
  // The server lets go of the last block once it has read the request to.
  await until(() => pictureBlocks(server.pid).length === 1, 'the server has one block');
  assert.ok(pictureBlocks(server.pid)[0] >= 1280 * 720 * 4);
});
