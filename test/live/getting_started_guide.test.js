'use strict';

// The first program of docs/getting-started.md, as it stands there.
const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { test } = require('node:test');
const { installExamples, runScript } = require('../support/examples.js');
const { startInputDesktop } = require('../support/input_desktop.js');
const { codeOf } = require('../support/pages.js');
const { decode } = require('../support/picture.js');
const { startTerminal } = require('../support/receivers.js');

test('first.js sees the desktop, takes its picture, clicks and types', async (t) => {
  const desktop = await startInputDesktop(t, { manager: true });
  const terminal = await startTerminal(t, desktop, { geometry: '60x20+100+100' });
  await terminal.begin();
  const folder = installExamples(t);
  fs.writeFileSync(path.join(folder, 'first.js'), codeOf('getting-started.md', 'js')[0]);

  const out = await runScript(t, desktop.env, folder, 'first.js').ends();
  assert.match(out, /^display \d+, screen: 1280 x 800 points$/m);
  const [, w, h, x, y] = /^window of \S+: (\d+) x (\d+) at (\d+),(\d+)$/m.exec(out).map(Number);
  const { width } = await decode(fs.readFileSync(path.join(folder, 'screen.jpg')).toString('base64'));
  assert.equal(width, 1280);
  const pointer = await desktop.addon.getCursorPosition();
  assert.ok(Math.abs(pointer.x - x - w / 2) <= 1 && Math.abs(pointer.y - y - h / 2) <= 1);
  assert.equal(await terminal.finish(), 'Hello, 世界\r');
});
