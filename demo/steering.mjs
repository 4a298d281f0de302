// Programs and the clipboard: one is opened by its name, hidden and shown again, and a text goes to a
// page and comes back.
import { until } from './desktop.mjs';
import { PARAGRAPH } from './workbench.mjs';

const TEXT = 'From the clipboard: ½ € ≠ ¼ £ → ✓ 😀';

/** Runs and times steps; `done` has a line for each. */
function startSteps() {
  const done = [];
  const step = async (what, perform, isSo = () => true) => {
    const start = performance.now();
    const result = await perform();
    const milliseconds = performance.now() - start;
    await until(what, 20, () => isSo(result));
    const told = JSON.stringify(result) ?? '';
    done.push({ step: what, result: told, milliseconds: milliseconds.toFixed(1) });
    return result;
  };
  return { done, step };
}

/** Copies what was typed into the page, and pastes another text; returns what was done. */
export async function shareText(deskhand, workbench) {
  const { done, step } = startSteps();
  const { field } = workbench.state().places;
  deskhand.mouseClick('left', field.x, field.y);
  deskhand.keyPress('ctrl+a');
  await step("keyPress('ctrl+c') copies the text, readClipboard() reads it", async () => {
    deskhand.keyPress('ctrl+c');
    await until('a copy', 20, () => deskhand.readClipboard() === PARAGRAPH);
  });
  await step(`writeClipboard('${TEXT}')`, () => deskhand.writeClipboard(TEXT));
  await step('readClipboard()', () => deskhand.readClipboard(), (text) => text === TEXT);
  await step("keyPress('ctrl+v') pastes it", () => deskhand.keyPress('ctrl+v'));
  await workbench.becomes('the page has it', ({ text }) => text === TEXT);
  deskhand.keyPress('ctrl+a'); // no caret blinks in pictures of a selection
  console.table(done);
  return done;
}

/**
 * Opens the program of that name, hides it and shows it again; returns what was done. `look(what)`
 * is called whenever there is something else to be seen.
 */
export async function steer(deskhand, name, look) {
  const { done, step } = startSteps();
  const app = await step(`resolveAppName('${name}')`, () => deskhand.resolveAppName(name), Boolean);
  const { bundleId } = app;
  const isListed = () => deskhand.getWindowList().some((window) => window.bundleId === bundleId);
  await step(`openApp('${bundleId}')`, () => deskhand.openApp(bundleId), isListed);
  const isInFront = (front) => front?.bundleId === bundleId;
  await step('getFrontmostApp()', () => deskhand.getFrontmostApp(), isInFront);
  await look('opened');
  await step(`hideApps(['${bundleId}'])`, () => deskhand.hideApps([bundleId]), () => !isListed());
  await look('hidden');
  await step(`unhideApps(['${bundleId}'])`, () => deskhand.unhideApps([bundleId]), isListed);
  await look('shown');
  const { x, y, w, h } = deskhand.getWindowList().find((window) => window.bundleId === bundleId);
  const middle = [Math.round(x + w / 2), Math.round(y + h / 2)];
  await step(`appUnderPoint(${middle})`, () => deskhand.appUnderPoint(...middle), Boolean);
  console.table(done);
  return done;
}
