'use strict';

// Texts of 1,000 characters, each hard in another way. Always the same ones.

const LENGTH = 1000;

const range = (first, last) =>
  Array.from({ length: last - first + 1 }, (_, index) => String.fromCodePoint(first + index));

/** As many of the pieces as make 1,000 characters, in an order in which neighbours differ. */
function textOf(pieces) {
  const step = 37; // no length of a list below is a multiple of it
  const characters = [];
  for (let index = 0; characters.length < LENGTH; ++index) {
    characters.push(...pieces[(index * step) % pieces.length]);
  }
  return characters.slice(0, LENGTH).join('');
}

const ascii = range(0x20, 0x7e);
const letters = [...range(0x61, 0x7a), ...range(0x41, 0x5a)];
const marks = ['\u0300', '\u0301', '\u0302', '\u0303', '\u0308', '\u030a', '\u0323', '\u0327'];

const emoji = [
  ...['👩‍👩‍👧‍👦', '🏳️‍🌈', '👍🏽', '❤️', '🇩🇪', '1️⃣', '👨🏿‍🚀', '🧑‍🤝‍🧑', '😀', '🎉', '👁️‍🗨️', '🏴‍☠️'],
  ...['🐻‍❄️', '🧔‍♀️', '🇯🇵', '☕', '🚀', '🫠', '🤷🏼‍♂️', '✈️', ' ', 'ok'],
];

const texts = {
  'all of ASCII': textOf(ascii),
  'Latin letters with accents': textOf([...range(0xa1, 0xac), ...range(0xae, 0xff), 'e', ' ']),
  'Greek and Cyrillic': textOf([
    ...[...range(0x391, 0x3a1), ...range(0x3a3, 0x3ce)],
    ...[...range(0x410, 0x44f), 'ё', 'Ё', ' ', ','],
  ]),
  '1,000 different Chinese characters': range(0x4e00, 0x4e00 + LENGTH - 1).join(''),
  'joined emoji': textOf(emoji),
  'combining marks': textOf(
    letters.flatMap((letter, index) => {
      const mark = marks[index % marks.length];
      const another = marks[(index + 3) % marks.length];
      return [letter + mark, letter + mark + another];
    }),
  ),
  'right to left': textOf([
    ...[...range(0x5d0, 0x5ea), ...range(0x621, 0x63a), ...range(0x641, 0x652)],
    ...['\u05b7', '\u200f', '؟', '٣', ' ', '7', 'abc'],
  ]),
};

/** A text as long with no more than `count` different characters, which are its first ones. */
function withFewCharacters(text, count) {
  const characters = [...text];
  const kept = [...new Set(characters)].slice(0, count);
  const known = new Set(kept);
  return characters
    .map((character, index) => (known.has(character) ? character : kept[(index * 7) % kept.length]))
    .join('');
}

module.exports = { texts, withFewCharacters };
