'use strict';

// What the words of a command line stand for.
const { InvalidArgumentError } = require('commander');

const MAX_JPEG_EDGE = 65_500;

function fail(wanted) {
  throw new InvalidArgumentError(`It must be ${wanted}.`);
}

function toNumber(text, wanted) {
  const value = text.trim() === '' ? NaN : Number(text);
  return Number.isFinite(value) ? value : fail(wanted);
}

const number = (text) => toNumber(text, 'a number');

/** A reader of whole numbers. */
function integer(least, most) {
  const wanted = `a whole number from ${least} to ${most}`;
  return (text) => {
    const value = toNumber(text, wanted);
    return Number.isInteger(value) && value >= least && value <= most ? value : fail(wanted);
  };
}

/** A reader of numbers with commas between them. */
function numbers(count, wanted) {
  return (text) => {
    const parts = text.split(',');
    return parts.length === count ? parts.map((part) => toNumber(part, wanted)) : fail(wanted);
  };
}

function point(text) {
  const [x, y] = numbers(2, 'two numbers: x,y')(text);
  return { x, y };
}

function region(text) {
  const wanted = 'four numbers: x,y,width,height, with a width and a height above 0';
  const [x, y, w, h] = numbers(4, wanted)(text);
  return w > 0 && h > 0 ? { x, y, w, h } : fail(wanted);
}

function size(text) {
  const wanted = `two whole numbers of pixels: WIDTHxHEIGHT, each from 1 to ${MAX_JPEG_EDGE}`;
  const match = /^(\d+)x(\d+)$/i.exec(text);
  const [width, height] = match ? match.slice(1).map(Number) : fail(wanted);
  const isPossible = (edge) => edge >= 1 && edge <= MAX_JPEG_EDGE;
  return isPossible(width) && isPossible(height) ? { width, height } : fail(wanted);
}

function quality(text) {
  const wanted = 'a number above 0 and at most 1';
  const value = toNumber(text, wanted);
  return value > 0 && value <= 1 ? value : fail(wanted);
}

/** For options that may be given several times. */
const collect = (text, previous = []) => [...previous, text];

module.exports = { collect, integer, number, point, quality, region, size };
