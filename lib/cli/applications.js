'use strict';

const { displaysOf, resolveApp, serviced } = require('./native.js');
const { Failure } = require('./output.js');

const NAMES = ['<names...>', 'bundle identifiers, or names as people say them'];

async function open({ words: [name], load }) {
  const addon = load();
  displaysOf(addon);
  const app = resolveApp(addon, name);
  if (!(await serviced(() => addon.openApp(app.bundleId)))) {
    const hint =
      'It could not be started, or showed no window within ten seconds. Does it start by hand?';
    throw new Failure(`"${app.displayName}" (${app.bundleId}) did not open`, hint);
  }
  return { value: app };
}

/** A command that calls a function with the identifiers of applications that run. */
function withRunning(functionName) {
  return ({ words: [names], load }) => {
    const addon = load();
    displaysOf(addon);
    const apps = names.map((name) => resolveApp(addon, name));
    const running = new Set(addon.listRunningApps().map(({ bundleId }) => bundleId));
    const absent = apps.find(({ bundleId }) => !running.has(bundleId));
    if (absent) {
      const message = `"${absent.displayName}" (${absent.bundleId}) does not run`;
      throw new Failure(message, 'See "deskhand apps" for what runs.');
    }
    addon[functionName](apps.map(({ bundleId }) => bundleId));
    return { value: apps };
  };
}

module.exports = [
  {
    name: 'open',
    summary: 'launch an application, or bring it to the front',
    words: [['<name>', 'a bundle identifier, or a name as people say it']],
    examples: ['deskhand open org.gnome.Calculator', "deskhand open 'Text Editor'"],
    run: open,
  },
  {
    name: 'hide',
    summary: 'hide applications',
    words: [NAMES],
    examples: ['deskhand hide org.gnome.Calculator', 'deskhand hide Chromium XTerm'],
    run: withRunning('hideApps'),
  },
  {
    name: 'unhide',
    summary: 'show hidden applications again',
    words: [NAMES],
    examples: ['deskhand unhide org.gnome.Calculator'],
    run: withRunning('unhideApps'),
  },
];
