'use strict';

// Types a line in each of several scripts into whatever has the keyboard focus, whatever the layout
// of the keyboard. Usage: node type-multilingual.js [SECONDS to bring a window to the front]
const { setTimeout: delay } = require('node:timers/promises');
const { checkAccessibility, getFrontmostApp, typeText } = require('deskhand');

const LINES = [
  'Hello, world!',
  'Grüß Gott, čau, hallå',
  'Γειά σου Κόσμε',
  'Привіт, світе',
  'שלום עולם',
  'नमस्ते दुनिया',
  '你好，世界',
  'こんにちは',
  '👋🌍',
];

async function main(seconds = 3) {
  if (!checkAccessibility()) throw new Error('this process may not type');
  console.log(`Click into a text: in ${seconds} s it is typed into.`);
  await delay(1000 * seconds);
  console.log(`typing into ${getFrontmostApp()?.displayName ?? 'what has the focus'}`);
  for (const line of LINES) typeText(`${line}\n`);
}

main(process.argv[2] && Number(process.argv[2])).catch((error) => {
  console.error(error.message);
  process.exitCode = 1;
});
