'use strict';
// Under sanitizers: they are at work, and what they find reaches the judgement.
const assert = require('node:assert/strict');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { test } = require('node:test');

const { spawnScript } = require('./child');
const { findingsInFolder } = require('./sanitizer_reports');

const skip = process.env.DESKHAND_SANITIZED ? false : 'not built with sanitizers';

/** Commits a fault in a process of its own; how it ended, and what its reports say. */
async function commit(t, fault) {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'deskhand-reports-'));
  t.after(() => fs.rmSync(folder, { recursive: true }));
  const options = process.env.ASAN_OPTIONS.replace(/log_path=[^:]*/, `log_path=${folder}/report`);
  const { code, signal } = await spawnScript('commit_fault.js', [fault], { ASAN_OPTIONS: options });
  return { code, signal, ...findingsInFolder(folder, { countsDeliberate: true }) };
}

for (const fault of ['leakMemory', 'leakFoundationString']) {
  test(`${fault} is reported as a leak of our own`, { skip }, async (t) => {
    const { code, errors, leaks } = await commit(t, fault);
    assert.deepEqual({ code, errors, count: leaks.length },
      { code: 0, errors: [], count: leaks.length });
    assert.ok(leaks.some((leak) => leak.includes(
      { leakMemory: 'LeakMemory', leakFoundationString: 'LeakFoundationString' }[fault])), leaks);
  });
}

for (const [fault, kind] of [
  ['readFreedMemory', /heap-use-after-free/], ['overflowInteger', /signed integer overflow/],
]) {
  test(`${fault} ends the process with a report`, { skip }, async (t) => {
    const { signal, errors } = await commit(t, fault);
    assert.equal(signal, 'SIGABRT');
    assert.equal(errors.length, 1);
    assert.match(errors[0], kind);
  });
}
