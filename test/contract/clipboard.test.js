'use strict';
// readClipboard and writeClipboard: the plain text of the general pasteboard.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene } = require('./harness');

const general = ['+[NSPasteboard generalPasteboard]'];
const read = [general, ['-[NSPasteboard stringForType:]', 'NSPasteboardTypeString']];
const clear = [general, ['-[NSPasteboard clearContents]']];
const put = (text) => [
  general, ['-[NSPasteboard setString:forType:]', text, 'NSPasteboardTypeString'],
];

test('an empty string on the clipboard is returned as an empty string, not as null', (t) => {
  const mac = scene(t, { clipboard: { text: '' } });
  assert.equal(mac.addon.readClipboard(), '');
});

test('writeClipboard with an empty string clears the clipboard and puts that empty string on it',
  (t) => {
    const mac = scene(t, { clipboard: { text: 'before', image: true } });
    assert.equal(mac.addon.writeClipboard(''), undefined);
    assert.deepEqual(mac.calls(), [...clear, ...put('')]);
    assert.equal(mac.addon.readClipboard(), '');
  });

for (const [shown, ...args] of [
  ['123', 123], ['nothing'], ['undefined', undefined], ['null', null], ['true', true],
  ['an object', {}], ['an array', ['x']], ['a String object', new String('x')],
  ['a symbol', Symbol('x')], ['a bigint', 1n],
]) {
  test(`writeClipboard of ${shown} changes nothing and returns undefined`, (t) => {
    const mac = scene(t, { clipboard: { text: 'kept' } });
    assert.equal(mac.addon.writeClipboard(...args), undefined);
    assert.deepEqual(mac.calls(), []);
    assert.equal(mac.addon.readClipboard(), 'kept');
  });
}

test('a clipboard holding only an image makes readClipboard() return null', (t) => {
  const mac = scene(t, { clipboard: { image: true } });
  assert.equal(mac.addon.readClipboard(), null);
});

test('an empty clipboard makes readClipboard() return null', (t) => {
  const mac = scene(t, { clipboard: null });
  assert.equal(mac.addon.readClipboard(), null);
});

test('text outside the Basic Multilingual Plane survives a write and a read unchanged', (t) => {
  const mac = scene(t);
  const text = 'a😀𝒳𠮷 é\u0301 \u{10ffff} \u200f שלום';
  mac.addon.writeClipboard(text);
  assert.equal(mac.addon.readClipboard(), text);
});

test('a text is read up to its first U+0000', (t) => {
  const mac = scene(t, { clipboard: { text: 'before\0after' } });
  assert.equal(mac.addon.readClipboard(), 'before');
  mac.change({ clipboard: { text: '\0after' } });
  assert.equal(mac.addon.readClipboard(), '');
});

test('a text with U+0000 is written whole', (t) => {
  const mac = scene(t);
  mac.addon.writeClipboard('before\0after\0');
  assert.deepEqual(mac.calls(), [...clear, ...put('before\0after\0')]);
  assert.equal(mac.addon.readClipboard(), 'before');
});

test('half a surrogate pair becomes the replacement character', (t) => {
  const mac = scene(t);
  mac.addon.writeClipboard('a\ud83db\ude00');
  assert.equal(mac.addon.readClipboard(), 'a\ufffdb\ufffd');
});

test('a megabyte of text comes back as it was', (t) => {
  const mac = scene(t);
  const text = 'wörter\r\n\t'.repeat(120_000);
  mac.addon.writeClipboard(text);
  assert.ok(mac.addon.readClipboard() === text);
});

test('whatever else was on the clipboard is gone after a write', (t) => {
  const mac = scene(t, { clipboard: { text: 'old', image: true } });
  mac.addon.writeClipboard('new');
  assert.deepEqual(mac.calls(), [...clear, ...put('new')]);
  assert.equal(mac.addon.readClipboard(), 'new');
});

test('a write that the pasteboard refuses is not reported', (t) => {
  const mac = scene(t, {
    clipboard: { text: 'old' }, failing: ['-[NSPasteboard setString:forType:]'],
  });
  assert.equal(mac.addon.writeClipboard('new'), undefined);
  assert.equal(mac.addon.readClipboard(), null);
});

test('further arguments are ignored', (t) => {
  const mac = scene(t);
  mac.addon.writeClipboard('text', 'more', {});
  assert.equal(mac.addon.readClipboard(1, {}, 'x'), 'text');
});

test('every reading asks the pasteboard anew', (t) => {
  const mac = scene(t, { clipboard: { text: 'first' } });
  assert.equal(mac.addon.readClipboard(), 'first');
  mac.change({ clipboard: { text: 'second' } });
  assert.equal(mac.addon.readClipboard(), 'second');
  assert.deepEqual(mac.calls(), [...read, ...read]);
});

test('the calls of a write: cleared first, then the text as the plain-string type', (t) => {
  const mac = scene(t);
  mac.addon.writeClipboard('text');
  assert.deepEqual(mac.calls(), [...clear, ...put('text')]);
});
