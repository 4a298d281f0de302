// The default of an import is what require() gives.
import deskhand, { captureDisplay } from 'deskhand';
import * as everything from 'deskhand';
import { start } from 'deskhand/run-loop';

const same: typeof captureDisplay = deskhand.captureDisplay;
void same;
const all: typeof deskhand = everything.default;
void all;
start();
// @ts-expect-error
deskhand.default;
// @ts-expect-error
deskhand.nothing;
// @ts-expect-error
everything.nothing;
