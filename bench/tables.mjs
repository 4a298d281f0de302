// Markdown, so that a table can stand in the documentation as it is printed.

const digits = (value) => (value < 10 ? 2 : value < 100 ? 1 : 0);
export const number = (value) => value.toFixed(digits(value));
const range = ([low, high]) => `${number(low)}–${number(high)}`;

export function printTable(header, rows) {
  const cells = [header, ...rows.map((row) => row.map(String))];
  const widths = header.map((_, column) => Math.max(...cells.map((row) => row[column].length)));
  const line = (row) => `| ${row.map((cell, column) => cell.padEnd(widths[column])).join(' | ')} |`;
  const [first, ...rest] = cells;
  const rule = widths.map((width) => '-'.repeat(width));
  console.log([line(first), line(rule), ...rest.map(line)].join('\n'));
}

const header = [
  ...['', '× A', 'quartiles', 'ms', 'p10–p90', 'JS thread busy, ms', 'base64, KiB', 'shots'],
];

function cellsOf({ name, ratio, ms, busyMs, bytes, shots }) {
  return [
    name,
    number(ratio[0]),
    range(ratio.slice(1)),
    number(ms[0]),
    range(ms.slice(1)),
    busyMs ? number(busyMs[0]) : '',
    bytes ? Math.round(bytes / 1024) : 'no picture',
    shots,
  ];
}

/** What runRounds returns. */
export function printRounds(title, { rows, failures }) {
  console.log(`\n### ${title}\n`);
  printTable(header, rows.map(cellsOf));
  if (failures.length) console.log('\nDid not take part:\n');
  for (const { name, reason } of failures) console.log(`- ${name}: ${reason}`);
}
