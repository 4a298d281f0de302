'use strict';

/** Whether a leak's memory was asked for by the addon, itself or through a library. */
function isOfAddon(leak) {
  const frames = leak.split('\n').filter((line) => /^\s*#\d+ /.test(line));
  const addonFrame = frames.findIndex((frame) => frame.includes('/deskhand.node)'));
  if (addonFrame === -1) return false;
  // What the JavaScript heap keeps for an object that the addon makes is the heap's.
  return !frames.slice(0, addonFrame).some((frame) => frame.includes(' v8::'));
}

/**
 * The leaks of the addon in a sanitizer's report. Those of Node are no matter: at process.exit() it
 * leaves all of its own behind, and what only its JavaScript heap refers to looks leaked.
 */
function leaksOfAddon(report) {
  return report
    .split(/\n\s*\n/)
    .filter((block) => /(Direct|Indirect) leak of/.test(block))
    .filter(isOfAddon);
}

module.exports = { leaksOfAddon };
