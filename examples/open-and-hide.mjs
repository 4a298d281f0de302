// Opens an application by its name, hides it for a moment, and shows it again.
// Usage: node open-and-hide.mjs NAME [SECONDS]
import { setTimeout as delay } from 'node:timers/promises';
import deskhand from 'deskhand';

const [name = '', seconds = 2] = process.argv.slice(2);

const app = deskhand.resolveAppName(name);
if (!app) throw new Error(`no application is called "${name}"`);
console.log(`${app.displayName} is ${app.bundleId}`);

if (!(await deskhand.openApp(app.bundleId))) throw new Error('it did not open within ten seconds');
const windows = () => deskhand.getWindowList().filter(({ bundleId }) => bundleId === app.bundleId);
console.log(`open, windows: ${windows().length}`);

/** Hiding and showing are requests: what comes of them is seen a little later. */
async function until(condition) {
  for (let n = 0; n < 100; ++n) {
    if (condition()) return;
    await delay(50);
  }
  throw new Error('it did not comply within five seconds');
}

deskhand.hideApps([app.bundleId]);
await until(() => windows().length === 0);
console.log('hidden');
await delay(1000 * seconds);

deskhand.unhideApps([app.bundleId]);
await until(() => windows().length > 0);
console.log('shown again');
