'use strict';

/** All combinations of one value of each factor: [{ name: value }]. `factors`: { name: values }. */
function allCombinations(factors) {
  let rows = [{}];
  for (const [name, values] of Object.entries(factors)) {
    rows = rows.flatMap((row) => values.map((value) => ({ ...row, [name]: value })));
  }
  return rows;
}

/** The pairs of values, of two factors each, that a row has. */
function pairsOf(row) {
  const words = Object.entries(row).map(([name, value]) => `${name}=${value}`);
  return words.flatMap((first, index) =>
    words.slice(index + 1).map((second) => `${first} ${second}`),
  );
}

/**
 * A few of all combinations in which each value of each factor meets each of every other one at
 * least once. Always the same ones; among equals those whose values have come up least.
 */
function pairwiseCombinations(factors) {
  const rows = allCombinations(factors).map((row) => ({ row, pairs: pairsOf(row) }));
  const missing = new Set(rows.flatMap(({ pairs }) => pairs));
  const uses = new Map();
  const usesOf = (value) => uses.get(value) ?? 0;
  const gain = ({ pairs }) => pairs.filter((pair) => missing.has(pair)).length;
  const wear = ({ row }) =>
    Object.values(row).reduce((total, value) => total + usesOf(value), 0);
  const isBetter = (one, other) =>
    gain(one) === gain(other) ? wear(one) < wear(other) : gain(one) > gain(other);
  const chosen = [];
  while (missing.size > 0) {
    const best = rows.reduce((most, next) => (isBetter(next, most) ? next : most));
    for (const pair of best.pairs) missing.delete(pair);
    for (const value of Object.values(best.row)) uses.set(value, usesOf(value) + 1);
    chosen.push(best.row);
  }
  return chosen;
}

module.exports = { allCombinations, pairwiseCombinations };
