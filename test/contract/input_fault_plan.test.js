'use strict';
// Any single platform call of mouse and keyboard may fail: the other events follow with their
// pauses, the result is the same, and nothing is left over. Each function is run once for every
// call that may fail, with that call failing.
const assert = require('node:assert/strict');
const { test } = require('node:test');

const { scene } = require('./harness');

const functions = [
  { name: 'mouseClick', args: ['right', 10, 20, 3, 'cmd+shift'], events: 7 },
  { name: 'mouseMove', args: [10, 20], events: 1 },
  { name: 'mouseDrag', args: [0, 0, 100, 50, 'middle'], events: 13 },
  { name: 'mouseDown', args: ['left', 10, 20], events: 1 },
  { name: 'mouseUp', args: ['left', 10, 20], events: 1 },
  { name: 'scroll', args: [1, -2, 10, 20], events: 2 },
  { name: 'typeText', args: [`${'x'.repeat(25)}\tb\r\nc`], events: 8 },
  { name: 'keyPress', args: ['cmd+c', 3], events: 6 },
  { name: 'keyHold', args: ['shift+space', 500], events: 2 },
];

/** The calls of each event apart, and each pause by itself. */
function groupsOf(calls) {
  const groups = [];
  for (const call of calls) {
    if (call[0] === 'CGEventSourceCreate' || call[0] === 'usleep') groups.push([]);
    groups.at(-1).push(call);
  }
  return groups;
}

/** What is left of an event whose source could not be made: it is made without one. */
function withoutSource(group) {
  return group
    .filter(([name, what]) => !(name === 'CFRelease' && what === 'source'))
    .map((call) => call.map((word) => (word === 'source' ? 'nil' : word)));
}

/** What is left of an event that could not be made: its source. */
const withoutEvent = ([makeSource, makeEvent]) => [makeSource, makeEvent, ['CFRelease', 'source']];

/** The calls of all groups, those of one replaced. */
const callsWith = (groups, place, replacement) =>
  groups.flatMap((group, index) => (index === place ? replacement : group));

for (const { name, args, events } of functions) {
  test(`${name} goes on whichever platform call fails`, async (t) => {
    let whole;
    await t.test('none', (t) => {
      const mac = scene(t);
      assert.equal(mac.addon[name](...args), true);
      whole = groupsOf(mac.calls());
      // A source and an event each: the plan below reaches them all.
      assert.equal(mac.failableCalls().length, 2 * events);
    });
    const places = whole.flatMap(([[first]], place) => (first === 'usleep' ? [] : [place]));
    for (const [index, place] of places.entries()) {
      await t.test(`the source of event ${index + 1}`, (t) => {
        const mac = scene(t);
        mac.failCall(2 * index + 1);
        assert.equal(mac.addon[name](...args), true);
        assert.deepEqual(mac.calls(), callsWith(whole, place, withoutSource(whole[place])));
      });
      await t.test(`event ${index + 1}`, (t) => {
        const mac = scene(t);
        mac.failCall(2 * index + 2);
        assert.equal(mac.addon[name](...args), true);
        assert.deepEqual(mac.calls(), callsWith(whole, place, withoutEvent(whole[place])));
      });
    }
  });

  test(`${name} posts every event when no source can be made`, (t) => {
    const mac = scene(t, { failing: ['CGEventSourceCreate'] });
    assert.equal(mac.addon[name](...args), true);
    assert.equal(mac.callsTo('CGEventPost').length, events);
  });

  test(`${name} posts nothing and returns true when no event can be made`, (t) => {
    const mac = scene(t, {
      failing: ['CGEventCreateMouseEvent', 'CGEventCreateKeyboardEvent',
        'CGEventCreateScrollWheelEvent'],
    });
    assert.equal(mac.addon[name](...args), true);
    assert.deepEqual(mac.callsTo('CGEventPost'), []);
    assert.equal(mac.callsTo('CGEventSourceCreate').length, events);
  });
}

test('getCursorPosition says 0, 0 when its one call that may fail does', (t) => {
  const mac = scene(t, { cursor: [10, 20] });
  mac.failCall(1);
  assert.deepEqual(mac.addon.getCursorPosition(), { x: 0, y: 0 });
  assert.deepEqual(mac.failableCalls(), ['CGEventCreate']);
});
