'use strict';
// hideApps and unhideApps: requests to running applications, by their exact bundle identifiers.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { listRunning, readBundleId, readHidden, hide, unhide } = require('./app_calls');
const { scene } = require('./harness');

const visible = { pid: 11, bundleId: 'x', name: 'Visible' };
const hidden = { pid: 12, bundleId: 'x', name: 'Hidden', isHidden: true };
const other = { pid: 13, bundleId: 'y', name: 'Other' };
const hiddenOther = { pid: 14, bundleId: 'y', name: 'Hidden other', isHidden: true };
const bare = { pid: 15, name: 'bare' };
const running = [visible, hidden, other, hiddenOther, bare];

const requests = (mac) =>
  mac.calls().filter(([name]) => /(hide|unhide)\]$/.test(name));

for (const [name, request, affected, affectedOther] of [
  ['hideApps', hide, 11, 13], ['unhideApps', unhide, 12, 14],
]) {
  test(`${name}(["x", 5, null]) ignores what is no string and changes only matches of "x"`, (t) => {
    const mac = scene(t, { running });
    assert.equal(mac.addon[name](['x', 5, null]), undefined);
    assert.deepEqual(requests(mac), [request(affected)]);
  });

  test(`${name}([]) does nothing and returns undefined`, (t) => {
    const mac = scene(t, { running });
    assert.equal(mac.addon[name]([]), undefined);
    assert.deepEqual(requests(mac), []);
  });

  test(`${name} without an array does nothing at all and returns undefined`, (t) => {
    const mac = scene(t, { running });
    for (const odd of [[], ['x'], [undefined], [null], [5], [{ length: 1, 0: 'x' }],
      [new Set(['x'])], [new Uint8Array(2)], [new Proxy(['x'], {})], [() => ['x']]]) {
      assert.equal(mac.addon[name](...odd), undefined);
    }
    assert.deepEqual(mac.calls(), []);
  });

  test(`${name} does not match identifiers that differ in letter case`, (t) => {
    const mac = scene(t, { running });
    mac.addon[name](['X', 'x ', '']);
    assert.deepEqual(requests(mac), []);
  });

  test(`${name} reaches every running instance`, (t) => {
    const instances = [31, 32, 33]
      .map((pid) => ({ ...(name === 'hideApps' ? visible : hidden), pid }));
    const mac = scene(t, { running: instances });
    mac.addon[name](['x']);
    assert.deepEqual(requests(mac), [request(31), request(32), request(33)]);
  });

  test(`${name} goes by the system's order, not the array's, and each identifier counts once`,
    (t) => {
      const mac = scene(t, { running });
      mac.addon[name](['y', 'x', 'y', 'x']);
      assert.deepEqual(requests(mac), [request(affected), request(affectedOther)]);
    });

  test(`${name} reaches background applications too`, (t) => {
    const application = { ...(name === 'hideApps' ? visible : hidden), policy: 2 };
    const mac = scene(t, { running: [application] });
    mac.addon[name](['x']);
    assert.deepEqual(requests(mac), [request(application.pid)]);
  });

  test(`${name} reports no request that the system refuses`, (t) => {
    const mac = scene(t, { running, failing: [request(0)[0]] });
    assert.equal(mac.addon[name](['x', 'y']), undefined);
    assert.deepEqual(requests(mac), [request(affected), request(affectedOther)]);
  });

  test(`${name} skips the holes of a sparse array`, (t) => {
    const mac = scene(t, { running });
    const sparse = [];
    sparse[1000] = 'x';
    assert.equal(mac.addon[name](sparse), undefined);
    assert.deepEqual(requests(mac), [request(affected)]);
  });

  test(`${name} lets an element's own exception through and asks nothing`, (t) => {
    const mac = scene(t, { running });
    const refusal = { mine: true };
    const list = ['x', 'y'];
    Object.defineProperty(list, 1, { get() { throw refusal; } });
    assert.throws(() => mac.addon[name](list), (error) => error === refusal);
    assert.deepEqual(mac.calls(), []);
  });

  test(`${name} takes identifiers beyond ASCII and with U+0000 whole`, (t) => {
    const isHidden = name === 'unhideApps';
    const mac = scene(t, {
      running: [{ pid: 41, bundleId: 'com.测试🖥', isHidden }, { pid: 42, bundleId: 'x', isHidden }],
    });
    mac.addon[name](['com.测试🖥', 'x\0y']);
    assert.deepEqual(requests(mac), [request(41)]);
  });

  test(`${name} ignores further arguments`, (t) => {
    const mac = scene(t, { running });
    assert.equal(mac.addon[name](['x'], ['y'], 'y'), undefined);
    assert.deepEqual(requests(mac), [request(affected)]);
  });

  test(`the calls of ${name}: hidden or not is asked of matches alone`, (t) => {
    const mac = scene(t, { running });
    mac.addon[name](['y']);
    const isHide = name === 'hideApps';
    assert.deepEqual(mac.calls(), [
      ...listRunning,
      readBundleId(11), readBundleId(12),
      readBundleId(13), readHidden(13), ...(isHide ? [hide(13)] : []),
      readBundleId(14), readHidden(14), ...(isHide ? [] : [unhide(14)]),
      readBundleId(15),
    ]);
  });
}

test('hideApps of an application that is already hidden sends no request', (t) => {
  const mac = scene(t, { running: [hidden] });
  mac.addon.hideApps(['x']);
  assert.deepEqual(mac.calls(), [...listRunning, readBundleId(12), readHidden(12)]);
});

test('unhideApps of a visible application sends no request', (t) => {
  const mac = scene(t, { running: [visible] });
  mac.addon.unhideApps(['x']);
  assert.deepEqual(mac.calls(), [...listRunning, readBundleId(11), readHidden(11)]);
});

test('an application that ends between the readings is asked in vain, and nothing else', (t) => {
  const mac = scene(t, {
    running: [{ ...visible, bundleId: ['x', null] }, { ...visible, pid: 21 }],
  });
  mac.addon.hideApps(['x']);
  mac.addon.hideApps(['x']);
  assert.deepEqual(requests(mac), [hide(11), hide(21), hide(21)]);
});

test('nothing running leaves nothing to hide', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.hideApps(['x']), undefined);
  assert.deepEqual(mac.calls(), listRunning);
});
