'use strict';
// typeText: every platform call, in order.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene } = require('./harness');
const { run, tap } = require('./input_calls');
const { throwsUsage } = require('./exceptions');

const tab = tap(48);
const return_ = tap(36);

test('the empty string posts nothing and returns true', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.typeText(''), true);
  assert.deepEqual(mac.calls(), []);
});

test('a word of five characters is one key down for key code 0 with its 5 units, and no key up',
  (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.typeText('hello'), true);
    assert.deepEqual(mac.calls(), [
      ['CGEventSourceCreate', -1],
      ['CGEventCreateKeyboardEvent', 'source', 0, true],
      ['CGEventKeyboardSetUnicodeString', 'event', 5, [104, 101, 108, 108, 111]],
      ['CGEventPost', 0, 'event'],
      ['CFRelease', 'event'],
      ['CFRelease', 'source'],
    ]);
  });

test('45 characters are three events of 20, 20 and 5 units', (t) => {
  const mac = scene(t);
  const text = 'abcdefghijklmnopqrstuvwxyz0123456789ABCDEFGHI';
  mac.addon.typeText(text);
  assert.deepEqual(mac.calls(),
    [...run(text.slice(0, 20)), ...run(text.slice(20, 40)), ...run(text.slice(40))]);
});

const texts = [
  ['a tab between two letters', 'a\tb', [...run('a'), ...tab, ...run('b')]],
  ['carriage return and line feed', 'a\r\nb', [...run('a'), ...return_, ...run('b')]],
  ['line feed and carriage return', '\n\r', [...return_, ...return_]],
  ['two carriage returns', '\r\r', [...return_, ...return_]],
  ['two carriage returns and a line feed', '\r\r\n', [...return_, ...return_]],
  ['a carriage return alone', '\r', return_],
  ['a line feed at the start', '\nab', [...return_, ...run('ab')]],
  ['a line feed at the end', 'ab\n', [...run('ab'), ...return_]],
  ['a tab alone', '\t', tab],
  ['a full run and a line feed', `${'x'.repeat(20)}\n`, [...run('x'.repeat(20)), ...return_]],
  ['control characters', '\b\x1b\0\v\f\x7f', run('\b\x1b\0\v\f\x7f')],
  ['separators of Unicode', 'a\u2028\u2029\u0085b', run('a\u2028\u2029\u0085b')],
  ['several scripts', 'Grüße, мир 世界', run('Grüße, мир 世界')],
  ['an emoji in one run', '👍', run('\ud83d\udc4d')],
  ['a combining mark', 'e\u0301', run('e\u0301')],
  ['lone surrogates', '\udc00x\ud800', run('\udc00x\ud800')],
];
for (const [what, text, expected] of texts) {
  test(`typeText types ${what}`, (t) => {
    const mac = scene(t);
    assert.equal(mac.addon.typeText(text), true);
    assert.deepEqual(mac.calls(), expected);
  });
}

test('19 characters and one of two units are cut between its halves', (t) => {
  const mac = scene(t);
  mac.addon.typeText(`${'x'.repeat(19)}\u{1F600}`);
  assert.deepEqual(mac.calls(), [...run(`${'x'.repeat(19)}\ud83d`), ...run('\ude00')]);
});

test('typing neither pauses nor sets flags', (t) => {
  const mac = scene(t);
  mac.addon.typeText('SHOUT\t!\r\n'.repeat(50));
  assert.deepEqual(mac.callsTo('usleep'), []);
  assert.deepEqual(mac.callsTo('CGEventSetFlags'), []);
});

test('a long text arrives whole', (t) => {
  const mac = scene(t);
  const text = Array.from({ length: 5000 }, (_, index) => String.fromCharCode(0x20 + index)).join('');
  mac.addon.typeText(text);
  const units = mac.callsTo('CGEventKeyboardSetUnicodeString').flatMap((call) => call[3]);
  assert.equal(String.fromCharCode(...units), text);
});

test('typeText(), typeText(42) and whatever is no string throw the usage, as a TypeError', (t) => {
  const mac = scene(t);
  const usage = 'typeText requires (text: string)';
  throwsUsage(mac, () => mac.addon.typeText(), usage);
  for (const odd of [42, undefined, null, {}, ['a'], new String('a'), Symbol('a'), true]) {
    throwsUsage(mac, () => mac.addon.typeText(odd), usage);
  }
});

test('extra arguments are ignored', (t) => {
  const mac = scene(t);
  assert.equal(mac.addon.typeText('a', 'b'), true);
  assert.deepEqual(mac.calls(), run('a'));
});
