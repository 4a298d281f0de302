'use strict';
// How the capture functions read their arguments: what throws, what is skipped, what is converted.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene } = require('./harness');

const displayUsage =
  'captureDisplay(excludeBundleIds: string[], quality?: number, displayId?: number)';
const regionUsage =
  'captureRegion(excludeBundleIds: string[], x, y, w, h, outW, outH, quality?, displayId?)';

const filterCall = '-[SCContentFilter initWithDisplay:excludingApplications:exceptingWindows:]';
const encodeCall = '-[NSBitmapImageRep representationUsingType:properties:]';

/** Three applications on screen, one of them without an identifier. */
const applications = { applications: [{ bundleId: 'com.a' }, {}, { bundleId: 'com.b' }] };
const excludeA = [['application com.a']];

function throwsPlainError(call, message) {
  assert.throws(call, (error) => {
    assert.equal(Object.getPrototypeOf(error), Error.prototype);
    assert.equal(error.message, message);
    return true;
  });
}

const region = [0, 0, 10, 10, 10, 10];
const kinds = [
  ['captureDisplay', (mac, list, ...rest) => mac.addon.captureDisplay(list, ...rest), displayUsage],
  ['captureRegion', (mac, list, ...rest) => mac.addon.captureRegion(list, ...region, ...rest),
    regionUsage],
];

test('captureDisplay() throws an Error, not a TypeError, with the full usage and no promise',
  (t) => {
    const mac = scene(t);
    throwsPlainError(() => mac.addon.captureDisplay(), displayUsage);
    assert.deepEqual(mac.calls(), []);
  });

test('captureDisplay throws its usage when the first argument is no array', (t) => {
  const mac = scene(t);
  for (const odd of [undefined, null, 'com.a', 1, {}, { length: 1, 0: 'com.a' }, new Set(),
    new Uint8Array(1)]) {
    throwsPlainError(() => mac.addon.captureDisplay(odd, 0.5, 1), displayUsage);
  }
  assert.deepEqual(mac.calls(), []);
});

test('captureRegion throws its usage with fewer than seven arguments', (t) => {
  const mac = scene(t);
  const whole = [[], ...region];
  for (let count = 0; count < whole.length; ++count) {
    throwsPlainError(() => mac.addon.captureRegion(...whole.slice(0, count)), regionUsage);
  }
  assert.deepEqual(mac.calls(), []);
});

test('captureRegion throws its usage when the first argument is no array', (t) => {
  const mac = scene(t);
  throwsPlainError(() => mac.addon.captureRegion('com.a', ...region), regionUsage);
  assert.deepEqual(mac.calls(), []);
});

test('captureRegion throws its usage when any of x, y, w, h, outW, outH is no number', (t) => {
  const mac = scene(t);
  for (let position = 1; position <= 6; ++position) {
    for (const odd of ['1', null, undefined, 1n, {}, true]) {
      const args = [[], ...region];
      args[position] = odd;
      throwsPlainError(() => mac.addon.captureRegion(...args), regionUsage);
    }
  }
  assert.deepEqual(mac.calls(), []);
});

for (const [name, capture] of kinds) {
  test(`${name} ignores entries that are not strings`, async (t) => {
    const mac = scene(t, { content: applications });
    await capture(mac, [1, null, 'com.a', undefined, {}, ['com.b'], new String('com.b'), true]);
    assert.deepEqual(mac.callsTo(filterCall)[0].slice(2), [...excludeA, []]);
  });

  test(`${name} with an empty array excludes nothing`, async (t) => {
    const mac = scene(t, { content: applications });
    await capture(mac, []);
    assert.deepEqual(mac.callsTo(filterCall)[0].slice(2), [[], []]);
  });

  test(`${name} skips the holes of a sparse array`, async (t) => {
    const mac = scene(t, { content: applications });
    const sparse = [];
    sparse[1000] = 'com.a';
    await capture(mac, sparse);
    assert.deepEqual(mac.callsTo(filterCall)[0].slice(2), [...excludeA, []]);
  });

  test(`${name} reads an array of four billion holes at once, strings in order`, async (t) => {
    const mac = scene(t, { content: applications });
    const sparse = [];
    sparse[2 ** 32 - 2] = 'com.none';
    sparse[70_000_000] = 'com.a';
    sparse[3] = 7;
    sparse.named = 'com.b';
    await capture(mac, sparse);
    assert.deepEqual(mac.callsTo(filterCall)[0].slice(2), [...excludeA, []]);
  });

  test(`${name} lets through an exception from an array of mostly holes`, async (t) => {
    const mac = scene(t);
    const refusal = new Error('mine');
    const sparse = [];
    sparse.length = 2 ** 32 - 1;
    Object.defineProperty(sparse, 2 ** 32 - 2, { get() { throw refusal; } });
    assert.throws(() => capture(mac, sparse), (error) => error === refusal);
    assert.deepEqual(mac.calls(), []);
  });

  test(`${name} reads elements through their getters, once each and in order`, async (t) => {
    const mac = scene(t, { content: applications });
    const reads = [];
    const list = Object.defineProperties([], {
      0: { enumerable: true, get() { reads.push(0); return 'com.a'; } },
      1: { enumerable: true, get() { reads.push(1); return 7; } },
    });
    await capture(mac, list);
    assert.deepEqual(reads, [0, 1]);
    assert.deepEqual(mac.callsTo(filterCall)[0].slice(2), [...excludeA, []]);
  });

  test(`${name} lets an element's own exception through and queues nothing`, async (t) => {
    const mac = scene(t, { content: applications });
    const refusal = { mine: true };
    const list = ['com.a', 'com.b'];
    Object.defineProperty(list, 1, { get() { throw refusal; } });
    assert.throws(() => capture(mac, list), (error) => error === refusal);
    // A worker that had been queued earlier than this one would have called by its end.
    await capture(mac, []);
    assert.equal(mac.callsTo('dispatch_semaphore_create').length, 1);
  });

  test(`${name} reads a Proxy around an array as an array`, async (t) => {
    const mac = scene(t, { content: applications });
    const list = new Proxy(['com.a'], {});
    if (name === 'captureDisplay') throwsPlainError(() => capture(mac, list), displayUsage);
    else throwsPlainError(() => capture(mac, list), regionUsage);
  });

  const factors = [
    [1.0, 1.0], [0.5, 0.5], [Number.MIN_VALUE, Number.MIN_VALUE],
    [0, 0.75], [-0, 0.75], [-1, 0.75], [1.1, 0.75], [Infinity, 0.75], [-Infinity, 0.75],
    ['x', 0.75], ['0.5', 0.75], [null, 0.75], [undefined, 0.75], [{}, 0.75], [true, 0.75],
  ];
  for (const [given, used] of factors) {
    const shown = Object.is(given, -0) ? '-0' : JSON.stringify(given) ?? String(given);
    test(`${name} with quality ${Number.isFinite(given) ? given : shown} encodes at ${used}`,
      async (t) => {
        const mac = scene(t);
        await capture(mac, [], given);
        assert.equal(mac.callsTo(encodeCall)[0][3].NSImageCompressionFactor, used);
      });
  }

  test(`${name} without a quality encodes at 0.75`, async (t) => {
    const mac = scene(t);
    await capture(mac, []);
    assert.equal(mac.callsTo(encodeCall)[0][3].NSImageCompressionFactor, 0.75);
  });

  test(`${name} hands a NaN quality to the encoder as NaN`, async (t) => {
    const mac = scene(t);
    await capture(mac, [], NaN);
    assert.ok(Number.isNaN(mac.callsTo(encodeCall)[0][3].NSImageCompressionFactor));
  });

  const displays = [
    { id: 4, width: 100, height: 100 }, { id: 1, width: 100, height: 100 },
    { id: 4294967295, width: 100, height: 100 },
  ];
  const identifiers = [
    ['absent', [], 1], ['0', [0], 1], ['NaN', [NaN], 1], ['a string', ['4'], 1],
    ['null', [null], 1], ['known', [4], 4], ['a fraction', [4.9], 4], ['-1', [-1], 4294967295],
    ['2^32 + 4', [2 ** 32 + 4], 4], ['unknown', [77], 4],
  ];
  for (const [shown, args, chosen] of identifiers) {
    test(`${name} with displayId ${shown} captures display ${chosen}`, async (t) => {
      const mac = scene(t, { content: { displays } });
      await capture(mac, [], 0.5, ...args);
      assert.equal(mac.callsTo(filterCall)[0][1], `display ${chosen}`);
    });
  }

  test(`${name} ignores extra arguments`, async (t) => {
    const mac = scene(t, { content: applications });
    const result = await capture(mac, ['com.a'], 0.5, 1, 'more', {}, 9);
    assert.equal(typeof result.base64, 'string');
  });

  test(`${name} copies its array: later changes to it have no effect`, async (t) => {
    const mac = scene(t, { content: applications });
    const list = ['com.a'];
    const promise = capture(mac, list);
    list[0] = 'com.b';
    await promise;
    assert.deepEqual(mac.callsTo(filterCall)[0].slice(2), [...excludeA, []]);
  });
}
