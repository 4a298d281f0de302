'use strict';
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene, builtIn } = require('./harness');

test('one built-in display of 1512 x 982 points at scale 2 gives one record', (t) => {
  const mac = scene(t, { screens: [builtIn] });
  assert.deepEqual(mac.addon.listDisplays(), [{
    id: 1, width: 1512, height: 982, isMain: true, originX: 0, originY: 0, scaleFactor: 2,
    name: 'Built-in Display',
  }]);
});
