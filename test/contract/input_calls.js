'use strict';
// The calls that the macOS backend makes for each kind of event, as the record has them: a test
// writes what it expects of a function as a list of these.

/** One event of `create`, from a source of its own, both released as soon as it is posted. */
function event([create, ...args], ...changes) {
  return [
    ['CGEventSourceCreate', -1],
    [create, 'source', ...args],
    ...changes,
    ['CGEventPost', 0, 'event'],
    ['CFRelease', 'event'],
    ['CFRelease', 'source'],
  ];
}

const setClickState = (state) => ['CGEventSetIntegerValueField', 'event', 1, state];
const setFlags = (flags) => ['CGEventSetFlags', 'event', flags];

/** A mouse event of a type at a point; `clickState` and `flags` only if they are set. */
function mouse(type, x, y, button, { clickState, flags } = {}) {
  return event(['CGEventCreateMouseEvent', type, [x, y], button],
    ...(clickState === undefined ? [] : [setClickState(clickState)]),
    ...(flags === undefined ? [] : [setFlags(flags)]));
}

const move = (x, y) => mouse(5, x, y, 0);

/** A wheel event in lines, vertical first. */
const wheel = (vertical, horizontal) =>
  event(['CGEventCreateScrollWheelEvent', 1, 2, [vertical, horizontal]]);

function key(code, isDown, flags) {
  return event(['CGEventCreateKeyboardEvent', code, isDown],
    ...(flags === undefined ? [] : [setFlags(flags)]));
}

const tap = (code, flags) => [...key(code, true, flags), ...key(code, false, flags)];

/** The one key press that types a run of text. */
function run(text) {
  const units = Array.from({ length: text.length }, (_, index) => text.charCodeAt(index));
  return event(['CGEventCreateKeyboardEvent', 0, true],
    ['CGEventKeyboardSetUnicodeString', 'event', units.length, units]);
}

const pause = (microseconds) => [['usleep', microseconds]];

module.exports = { mouse, move, wheel, key, tap, run, pause };
