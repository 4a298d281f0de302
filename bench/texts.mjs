// Texts to type, and how far from them is what arrived.
const range = (first, last) =>
  Array.from({ length: last - first + 1 }, (_, index) => String.fromCodePoint(first + index));

const repeated = (characters, length) =>
  Array.from({ length }, (_, index) => characters[(index * 7) % characters.length]).join('');

const ASCII = range(0x20, 0x7e);
const LATIN = [...ASCII, ...range(0xa1, 0xff)].filter((character) => character !== '\u00ad');
const GREEK_AND_CYRILLIC = [...range(0x3b1, 0x3c9), ...range(0x410, 0x44f), ' '];
const LENGTH = 1000;

/** A thousand characters each; the last has none twice. */
export const texts = {
  ASCII: repeated(ASCII, LENGTH),
  'Latin-1': repeated(LATIN, LENGTH),
  'Greek and Cyrillic': repeated(GREEK_AND_CYRILLIC, LENGTH),
  'CJK, all distinct': range(0x4e00, 0x4e00 + LENGTH - 1).join(''),
};

/** The number of characters to insert, delete or replace to make one text of the other. */
export function editDistance(one, other) {
  const [rows, columns] = [[...one], [...other]];
  let previous = Array.from({ length: columns.length + 1 }, (_, index) => index);
  for (let row = 1; row <= rows.length; ++row) {
    const current = [row];
    for (let column = 1; column <= columns.length; ++column) {
      const replaced = previous[column - 1] + (rows[row - 1] === columns[column - 1] ? 0 : 1);
      current.push(Math.min(replaced, previous[column] + 1, current[column - 1] + 1));
    }
    previous = current;
  }
  return previous.at(-1);
}
