// require() gives the functions, and nothing else.
import deskhand = require('deskhand');
import manifest = require('deskhand/package.json');

const names: string = manifest.name;
void names;
const shot: Promise<deskhand.DisplayCapture> = deskhand.captureDisplay([]);
void shot;
// @ts-expect-error
deskhand.default;
// @ts-expect-error
deskhand.nothing;
