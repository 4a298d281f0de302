// Medians and the like, and an order that is random but the same in every run.

/** The value below which the share `q` of `values` lies, by linear interpolation. */
export function quantile(values, q) {
  const sorted = [...values].sort((a, b) => a - b);
  const position = (sorted.length - 1) * q;
  const below = Math.floor(position);
  const above = Math.ceil(position);
  return sorted[below] + (sorted[above] - sorted[below]) * (position - below);
}

export const median = (values) => quantile(values, 0.5);

/** A generator of numbers from 0 to below 1: a linear congruence, which is random enough here. */
export function makeRandom(seed) {
  let state = seed >>> 0;
  return () => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
    return state / 2 ** 32;
  };
}

export function shuffled(values, random) {
  const result = [...values];
  for (let last = result.length - 1; last > 0; --last) {
    const other = Math.floor(random() * (last + 1));
    [result[last], result[other]] = [result[other], result[last]];
  }
  return result;
}
