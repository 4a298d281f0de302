'use strict';
// resolveAppName: from what a person calls an application to its bundle identifier.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { listRunning, locate, readBundleId, readName } = require('./app_calls');
const { scene } = require('./harness');

const safari = { pid: 11, bundleId: 'com.apple.Safari', name: 'Safari' };
const safariResult = { bundleId: 'com.apple.Safari', displayName: 'Safari' };

const calculatorPath = '/System/Applications/Calculator.app';
const calculator = {
  files: [calculatorPath],
  bundles: { [calculatorPath]: { bundleId: 'com.apple.calculator' } },
  displayNames: { [calculatorPath]: 'Rechner' },
};
const calculatorResult = { bundleId: 'com.apple.calculator', displayName: 'Rechner' };

const textEdit = {
  locations: { 'com.apple.TextEdit': '/Elsewhere/TextEdit.app' },
  bundles: { '/Elsewhere/TextEdit.app': { bundleId: 'com.apple.TextEdit' } },
  displayNames: { '/Elsewhere/TextEdit.app': 'TextEdit' },
};
const textEditResult = { bundleId: 'com.apple.TextEdit', displayName: 'TextEdit' };

const exists = (path) => ['-[NSFileManager fileExistsAtPath:]', path];
const bothFolders = (name) =>
  [exists(`/Applications/${name}.app`), exists(`/System/Applications/${name}.app`)];

test('the input "safari" matches a running application of the localized name "Safari", which it ' +
  'returns', (t) => {
  const mac = scene(t, { running: [safari] });
  for (const input of ['safari', 'Safari', 'SAFARI', 'sAfArI']) {
    assert.deepEqual(mac.addon.resolveAppName(input), safariResult);
  }
});

test('letters of other scripts match in either case', (t) => {
  const mac = scene(t, { running: [{ ...safari, name: 'Éléments ÄÖ Ωμέγα Привет' }] });
  assert.equal(mac.addon.resolveAppName('éLÉMENTS äö ωΜΈΓΑ пРИВЕТ').displayName,
    'Éléments ÄÖ Ωμέγα Привет');
});

test('names are compared whole: no spaces are trimmed and no ".app" is taken off', (t) => {
  const mac = scene(t, { running: [safari] });
  for (const input of [' safari', 'safari ', 'safari.app', 'safar', 'safarii', 'safari\0']) {
    assert.equal(mac.addon.resolveAppName(input), null);
  }
});

test('the first of several running applications of one name wins', (t) => {
  const mac = scene(t, { running: [{ ...safari, bundleId: 'com.first' }, safari] });
  assert.equal(mac.addon.resolveAppName('safari').bundleId, 'com.first');
});

test('background and accessory applications match by name', (t) => {
  const mac = scene(t, { running: [{ ...safari, policy: 2 }] });
  assert.deepEqual(mac.addon.resolveAppName('safari'), safariResult);
});

test('a running application without a bundle identifier does not match', (t) => {
  const mac = scene(t, { running: [{ ...safari, bundleId: null }, { ...safari, pid: 12 }] });
  assert.deepEqual(mac.addon.resolveAppName('safari'), safariResult);
});

test('a bundle identifier resolves among running applications only if a localized name equals it',
  (t) => {
    const namedLikeIt = { pid: 12, bundleId: 'com.other', name: 'COM.apple.TextEdit' };
    const mac = scene(t, { ...textEdit, running: [safari, namedLikeIt] });
    assert.deepEqual(mac.addon.resolveAppName('com.apple.TextEdit'),
      { bundleId: 'com.other', displayName: 'COM.apple.TextEdit' });
    mac.change({ running: [safari] });
    assert.deepEqual(mac.addon.resolveAppName('com.apple.TextEdit'), textEditResult);
  });

test('the identifier of a running application is no name: it resolves through the system', (t) => {
  const mac = scene(t, { running: [safari] });
  assert.equal(mac.addon.resolveAppName('com.apple.Safari'), null);
});

test('a bundle identifier in the wrong letter case may fail where a name would have matched', (t) => {
  const mac = scene(t, { ...textEdit, running: [safari] });
  assert.equal(mac.addon.resolveAppName('COM.APPLE.TEXTEDIT'), null);
  assert.deepEqual(mac.addon.resolveAppName('SAFARI'), safariResult);
});

test('"Calculator", with no such application running, resolves through its candidate path when the ' +
  'bundle-identifier look-up fails', (t) => {
  const mac = scene(t, calculator);
  assert.deepEqual(mac.addon.resolveAppName('Calculator'), calculatorResult);
  assert.deepEqual(mac.callsTo(exists('')[0]), bothFolders('Calculator'));
});

test('an input that already ends in ".app" does not match a folder candidate', (t) => {
  const mac = scene(t, calculator);
  assert.equal(mac.addon.resolveAppName('Calculator.app'), null);
  assert.deepEqual(mac.callsTo(exists('')[0]), bothFolders('Calculator.app'));
});

test('an empty string returns null', (t) => {
  const mac = scene(t, { ...calculator, running: [safari, { pid: 12, bundleId: 'com.x' }] });
  assert.equal(mac.addon.resolveAppName(''), null);
  assert.deepEqual(mac.callsTo(exists('')[0]), bothFolders(''));
});

test('an empty string matches a running application with an empty localized name', (t) => {
  const mac = scene(t, { running: [safari, { pid: 12, bundleId: 'com.x', name: '' }] });
  assert.deepEqual(mac.addon.resolveAppName(''), { bundleId: 'com.x', displayName: '' });
});

test('the folders are case-sensitive or not as the file system is: the input is used unchanged',
  (t) => {
    const mac = scene(t, calculator);
    assert.equal(mac.addon.resolveAppName('CALCULATOR'), null);
    assert.deepEqual(mac.callsTo(exists('')[0]), bothFolders('CALCULATOR'));
  });

test('/Applications comes before /System/Applications', (t) => {
  const [first, second] = ['/Applications/X.app', '/System/Applications/X.app'];
  const mac = scene(t, {
    files: [second, first],
    bundles: { [first]: { bundleId: 'com.first' }, [second]: { bundleId: 'com.second' } },
  });
  assert.equal(mac.addon.resolveAppName('X').bundleId, 'com.first');
});

for (const [what, bundle] of [['no bundle', undefined], ['no identifier', {}]]) {
  test(`a folder where there is ${what} is passed over for the next`, (t) => {
    const [first, second] = ['/Applications/X.app', '/System/Applications/X.app'];
    const mac = scene(t, {
      files: [first, second], bundles: { [first]: bundle, [second]: { bundleId: 'com.second' } },
    });
    assert.deepEqual(mac.addon.resolveAppName('X'), { bundleId: 'com.second', displayName: 'X' });
  });

  test(`a location where there is ${what} is passed over for the folders`, (t) => {
    const path = '/Applications/com.x.app';
    const mac = scene(t, {
      locations: { 'com.x': '/Elsewhere/X.app' },
      files: [path], bundles: { '/Elsewhere/X.app': bundle, [path]: { bundleId: 'com.named.com.x' } },
    });
    assert.equal(mac.addon.resolveAppName('com.x').bundleId, 'com.named.com.x');
  });
}

test('without a display name the input stands in for it', (t) => {
  const mac = scene(t, { ...textEdit, displayNames: {} });
  assert.deepEqual(mac.addon.resolveAppName('com.apple.TextEdit'),
    { bundleId: 'com.apple.TextEdit', displayName: 'com.apple.TextEdit' });
  mac.change({ ...calculator, displayNames: {} });
  assert.deepEqual(mac.addon.resolveAppName('Calculator'),
    { bundleId: 'com.apple.calculator', displayName: 'Calculator' });
});

test('a location without a path has no display name', (t) => {
  const mac = scene(t, { ...textEdit, failing: ['-[NSURL path]'] });
  assert.deepEqual(mac.addon.resolveAppName('com.apple.TextEdit'),
    { bundleId: 'com.apple.TextEdit', displayName: 'com.apple.TextEdit' });
});

test('the identifier found is the bundle\'s own, whatever was asked for', (t) => {
  const mac = scene(t, {
    ...textEdit, bundles: { '/Elsewhere/TextEdit.app': { bundleId: 'com.apple.textedit' } },
  });
  assert.equal(mac.addon.resolveAppName('com.apple.TextEdit').bundleId, 'com.apple.textedit');
});

test('without a string the answer is null, and nothing is asked for', (t) => {
  const mac = scene(t, { running: [safari, { pid: 1, bundleId: 'com.x', name: 'undefined' }] });
  for (const odd of [[], [undefined], [null], [5], [['safari']], [new String('safari')], [{}],
    [Symbol('x')], [true]]) {
    assert.equal(mac.addon.resolveAppName(...odd), null);
  }
  assert.deepEqual(mac.calls(), []);
});

test('further arguments are ignored', (t) => {
  const mac = scene(t, { running: [safari] });
  assert.deepEqual(mac.addon.resolveAppName('safari', 'more', {}), safariResult);
});

test('the keys of the result stand in the order bundleId, displayName, and there is no pid', (t) => {
  const mac = scene(t, { ...calculator, running: [safari] });
  for (const input of ['safari', 'Calculator']) {
    assert.deepEqual(Object.keys(mac.addon.resolveAppName(input)), ['bundleId', 'displayName']);
  }
});

test('names with U+0000, slashes and percent signs are used as they are', (t) => {
  const mac = scene(t);
  for (const input of ['a\0b', '../../etc', '%@', '%n%s', 'ü 🖥']) {
    assert.equal(mac.addon.resolveAppName(input), null);
    assert.deepEqual(mac.calls().slice(-4), [...locate(input), ...bothFolders(input)]);
  }
});

test('the calls of a name that is running: no more than up to the match', (t) => {
  const mac = scene(t, {
    running: [{ pid: 10, name: 'Safari' }, { pid: 12, bundleId: 'com.x' }, safari,
      { ...safari, pid: 13 }],
  });
  mac.addon.resolveAppName('safari');
  assert.deepEqual(mac.calls(), [
    ...listRunning,
    readBundleId(10),
    readBundleId(12), readName(12),
    readBundleId(11), readName(11),
  ]);
});

test('the calls of a bundle identifier: running names first, and no folder', (t) => {
  const mac = scene(t, { ...textEdit, running: [safari] });
  mac.addon.resolveAppName('com.apple.TextEdit');
  const path = '/Elsewhere/TextEdit.app';
  const calls = mac.calls();
  assert.deepEqual(calls.filter(([name]) => name !== '-[NSURL path]'), [
    ...listRunning, readBundleId(11), readName(11),
    ...locate('com.apple.TextEdit'),
    ['+[NSBundle bundleWithURL:]', `location ${path}`],
    ['-[NSBundle bundleIdentifier]', `bundle ${path}`],
    ['-[NSFileManager displayNameAtPath:]', path],
  ]);
  assert.deepEqual(mac.callsTo('-[NSURL path]'), [['-[NSURL path]', `location ${path}`]]);
});

test('the calls of a name in the second folder: everything before it was tried, in order', (t) => {
  const mac = scene(t, calculator);
  mac.addon.resolveAppName('Calculator');
  assert.deepEqual(mac.calls(), [
    ...listRunning,
    ...locate('Calculator'),
    ...bothFolders('Calculator'),
    ['+[NSBundle bundleWithPath:]', calculatorPath],
    ['-[NSBundle bundleIdentifier]', `bundle ${calculatorPath}`],
    ['-[NSFileManager displayNameAtPath:]', calculatorPath],
  ]);
});

test('a name that is nowhere costs one look-up by identifier and two looks at the file system',
  (t) => {
    const mac = scene(t, { running: [safari] });
    assert.equal(mac.addon.resolveAppName('Nothing'), null);
    assert.deepEqual(mac.calls(), [
      ...listRunning, readBundleId(11), readName(11), ...locate('Nothing'), ...bothFolders('Nothing'),
    ]);
  });
