'use strict';

// Says which windows open and close, until it is interrupted. Usage: node watch-windows.js
const { getWindowList } = require('deskhand');

const INTERVAL_MS = 250;

/** Windows have no names here: one is known by its application and its place. */
function keyOf({ bundleId, pid, x, y, w, h }) {
  return `${bundleId} (process ${pid}), ${w} x ${h} at ${x},${y}`;
}

/** How often each window is on the screen: several may be in the same place. */
function count(windows) {
  const counts = new Map();
  for (const key of windows.map(keyOf)) counts.set(key, (counts.get(key) ?? 0) + 1);
  return counts;
}

function report(before, now) {
  for (const key of new Set([...before.keys(), ...now.keys()])) {
    const change = (now.get(key) ?? 0) - (before.get(key) ?? 0);
    for (let n = 0; n < Math.abs(change); ++n) console.log(`${change > 0 ? '+' : '-'} ${key}`);
  }
}

let known = new Map();
function look() {
  const now = count(getWindowList());
  report(known, now);
  known = now;
}

look();
const timer = setInterval(look, INTERVAL_MS);
process.once('SIGINT', () => clearInterval(timer));
