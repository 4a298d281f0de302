'use strict';
// Calls that end in an exception: whose it is, and what was done before it reached the caller.
const assert = require('node:assert/strict');

/** Throws a TypeError with the message, and calls nothing. */
function throwsUsage(mac, call, message) {
  const before = mac.calls();
  assert.throws(call, (error) => {
    assert.equal(Object.getPrototypeOf(error), TypeError.prototype);
    assert.equal(error.message, message);
    return true;
  });
  assert.deepEqual(mac.calls(), before);
}

/** Throws a plain Error with the message, and calls nothing. */
function throwsPlainError(mac, call, message) {
  const before = mac.calls();
  assert.throws(call, (error) => {
    assert.equal(Object.getPrototypeOf(error), Error.prototype);
    assert.equal(error.message, message);
    return true;
  });
  assert.deepEqual(mac.calls(), before);
}

/** Throws Node-API's own error for a value that is no 'number' or no 'string'. */
function throwsConversionError(call, wanted) {
  assert.throws(call, (error) => {
    assert.ok(error instanceof TypeError, error);
    assert.equal(error.message, `A ${wanted} was expected`);
    return true;
  });
}

module.exports = { throwsUsage, throwsPlainError, throwsConversionError };
