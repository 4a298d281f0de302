'use strict';

// Structural similarity of two pictures, as Wang, Bovik, Sheikh and Simoncelli define it (2004):
// luma, a Gaussian window of 11 x 11 with sigma 1.5, the mean over all windows that fit.
const RADIUS = 5;
const SIGMA = 1.5;
const C1 = (0.01 * 255) ** 2;
const C2 = (0.03 * 255) ** 2;

const kernel = Float64Array.from({ length: 2 * RADIUS + 1 }, (_, index) =>
  Math.exp(-((index - RADIUS) ** 2) / (2 * SIGMA ** 2)),
);
const kernelSum = kernel.reduce((sum, weight) => sum + weight);
kernel.forEach((weight, index) => (kernel[index] = weight / kernelSum));

/** BT.601, as in JPEG. */
function lumaOf({ rgb, width, height }) {
  const luma = new Float64Array(width * height);
  for (let index = 0, byte = 0; index < luma.length; ++index, byte += 3) {
    luma[index] = 0.299 * rgb[byte] + 0.587 * rgb[byte + 1] + 0.114 * rgb[byte + 2];
  }
  return luma;
}

/** The weighted means of `f` over the windows that fit, row by row. */
function windowMeans(f, width, height) {
  const outWidth = width - 2 * RADIUS;
  const outHeight = height - 2 * RADIUS;
  const rows = new Float64Array(outWidth * height);
  for (let y = 0; y < height; ++y) {
    for (let x = 0; x < outWidth; ++x) {
      let sum = 0;
      for (let k = 0; k < kernel.length; ++k) sum += kernel[k] * f[y * width + x + k];
      rows[y * outWidth + x] = sum;
    }
  }
  const means = new Float64Array(outWidth * outHeight);
  for (let y = 0; y < outHeight; ++y) {
    for (let x = 0; x < outWidth; ++x) {
      let sum = 0;
      for (let k = 0; k < kernel.length; ++k) sum += kernel[k] * rows[(y + k) * outWidth + x];
      means[y * outWidth + x] = sum;
    }
  }
  return means;
}

/** 1 for equal pictures ({ rgb, width, height }) of the same size; less the more they differ. */
function ssim(picture, reference) {
  const { width, height } = reference;
  const a = lumaOf(picture);
  const b = lumaOf(reference);
  const mean = (f) => windowMeans(f, width, height);
  const product = (f, g) => f.map((value, index) => value * g[index]);
  const [meanA, meanB] = [mean(a), mean(b)];
  const [squareA, squareB, both] = [mean(product(a, a)), mean(product(b, b)), mean(product(a, b))];
  let sum = 0;
  for (let index = 0; index < meanA.length; ++index) {
    const [ma, mb] = [meanA[index], meanB[index]];
    const varianceA = squareA[index] - ma * ma;
    const varianceB = squareB[index] - mb * mb;
    const covariance = both[index] - ma * mb;
    sum +=
      ((2 * ma * mb + C1) * (2 * covariance + C2)) /
      ((ma * ma + mb * mb + C1) * (varianceA + varianceB + C2));
  }
  return sum / meanA.length;
}

module.exports = { ssim };
