'use strict';
// What the sanitizers' reports say of our own code. Run as a program it judges a folder of them.
const fs = require('node:fs');
const path = require('node:path');

// By module, as scripts/contract has the reports written.
const own = /\/(deskhand\.node|run_loop\.node|doubles\.node|libmacdoubles\.so)\)/;
const deliberate = /\/faulty\.node\)/;

function isLeakOfOurs(leak, { countsDeliberate }) {
  const frames = leak.split('\n').filter((line) => /^\s*#\d+ /.test(line));
  if (!countsDeliberate && frames.some((frame) => deliberate.test(frame))) return false;
  const ours = frames.findIndex((frame) => own.test(frame) || deliberate.test(frame));
  if (ours === -1) return false;
  // What the JavaScript heap keeps for an object that an addon makes is the heap's.
  return !frames.slice(0, ours).some((frame) => frame.includes(' v8::'));
}

/** The errors in a report, and the leaks with a frame in our own binaries. */
function findingsIn(report, options = { countsDeliberate: false }) {
  const blocks = report.split(/\n\s*\n/);
  const leaks = blocks
    .filter((block) => /(Direct|Indirect) leak of/.test(block))
    .filter((leak) => isLeakOfOurs(leak, options));
  const errors = blocks
    .filter((block) => /ERROR: AddressSanitizer|runtime error:/.test(block));
  return { errors, leaks };
}

/** The findings of all reports in a folder together. */
function findingsInFolder(folder, options) {
  const reports = fs.readdirSync(folder)
    .map((name) => fs.readFileSync(path.join(folder, name), 'utf8'));
  return findingsIn(reports.join('\n\n'), options);
}

module.exports = { findingsInFolder };

if (require.main === module) {
  const { errors, leaks } = findingsInFolder(process.argv[2]);
  for (const finding of [...errors, ...leaks]) console.error(finding);
  console.log(`sanitizers: ${errors.length} errors, ${leaks.length} leaks of our own`);
  process.exitCode = errors.length + leaks.length > 0 ? 1 : 0;
}
