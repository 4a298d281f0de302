'use strict';

const path = require('node:path');

const root = path.join(__dirname, '..');

/** Where a binary may be, in the order in which they are tried. */
function candidates(platform = process.platform, arch = process.arch) {
  return [
    path.join(root, 'prebuilds', `${platform}-${arch}`, 'deskhand.node'),
    path.join(root, 'build', 'release', 'deskhand.node'),
  ];
}

/** Loads the first binary that there is; throws an error that says what was tried and what to do. */
function load() {
  const failures = [];
  for (const file of candidates()) {
    try {
      return require(file);
    } catch (error) {
      failures.push(`  ${file}: ${error.message.split('\n')[0]}`);
    }
  }
  throw new Error(
    `deskhand has no binary for ${process.platform}-${process.arch} that loads here. Tried:\n` +
      `${failures.join('\n')}\n` +
      'Build one with "npm run build" in the package\'s folder.',
  );
}

module.exports = { candidates, load };
