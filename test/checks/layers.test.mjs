import assert from 'node:assert/strict';
import { test } from 'node:test';

import { findViolations } from '../../scripts/layers.mjs';

const check = (file, line) => findViolations([[file, `// A comment.\n${line}\n`]]);

test('logic may include the standard library, other logic and the seam', () => {
  for (const line of ['#include <vector>', '#include "platform/displays.h"', '#include "apps/x.h"']) {
    assert.deepEqual(check('capture/capture.cc', line), []);
  }
});

test('a system header outside of platform/<os>/ is named with its place', () => {
  assert.deepEqual(check('capture/capture.cc', '#include <unistd.h>'), [
    'src/capture/capture.cc:2: <unistd.h>: system headers belong in platform/<os>/',
  ]);
  assert.equal(check('capture/capture.cc', '#  import <AppKit/AppKit.h>').length, 1);
  assert.equal(check('capture/x_handlers.cc', '#include <xcb/xcb.h>').length, 1);
  assert.deepEqual(check('platform/x11/grab.cc', '#include <xcb/xcb.h>'), []);
});

test('Node types are for handlers and the addon folder', () => {
  assert.deepEqual(check('capture/capture_handlers.cc', '#include <napi.h>'), []);
  assert.deepEqual(check('addon/module.cc', '#include <napi.h>'), []);
  assert.equal(check('capture/capture.cc', '#include <napi.h>').length, 1);
  assert.equal(check('platform/x11/grab.cc', '#include <node_api.h>').length, 1);
});

test('no layer includes a backend, and no backend the other', () => {
  assert.equal(check('capture/capture.cc', '#include "platform/x11/grab.h"').length, 1);
  assert.equal(check('platform/macos/a.mm', '#include "platform/x11/grab.h"').length, 1);
  assert.deepEqual(check('platform/x11/a.cc', '#include "platform/x11/grab.h"'), []);
  assert.equal(check('platform/x11/a.cc', '#include "addon/arguments.h"').length, 1);
});

test('nothing is compiled conditionally', () => {
  assert.equal(check('capture/capture.cc', '#ifdef __APPLE__').length, 1);
  assert.equal(check('platform/macos/a.mm', '  # if 1').length, 1);
});
