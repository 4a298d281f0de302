// Whether two contestants' pictures are of the same thing, so that equal work is compared.
import { createRequire } from 'node:module';

const sharp = createRequire(import.meta.url)('sharp');

// Of 255. Other filters and a missing pointer make a mean difference of about 1 on these desktops;
// a picture of another screen, or without its colours, makes one of 50 and more.
const MOST_MEAN_DIFFERENCE = 2.5;

async function decode(base64) {
  const file = Buffer.from(base64, 'base64');
  const { format, width, height, chromaSubsampling } = await sharp(file).metadata();
  const pixels = await sharp(file).raw().toBuffer();
  return { form: `${format} ${chromaSubsampling} ${width} x ${height}`, pixels };
}

/** Null, or what is wrong with a picture beside the reference's. */
export async function findFault(base64, referenceBase64, { showsLess }) {
  const [picture, reference] = await Promise.all([decode(base64), decode(referenceBase64)]);
  if (picture.form !== reference.form) return `its picture is ${picture.form}`;
  if (showsLess) return null;
  let sum = 0;
  for (let index = 0; index < picture.pixels.length; ++index) {
    sum += Math.abs(picture.pixels[index] - reference.pixels[index]);
  }
  const mean = sum / picture.pixels.length;
  return mean > MOST_MEAN_DIFFERENCE ? `its picture differs by ${mean.toFixed(1)} of 255` : null;
}
