'use strict';
// Calls process.exit(7) while the run loop runs for a picture that never comes.
const { doubles, addon, sceneWithDefaults, until } = require('../harness');
const { newRunLoop, passes } = require('../run_loops');

async function main() {
  doubles.begin(sceneWithDefaults({ timeScale: 0.05, mainQueue: 'stalled' }));
  newRunLoop().start();
  const settled = () => { process.stdout.write('settled'); };
  addon.captureDisplay([]).then(settled, settled);
  if (!await until(() => passes() > 2)) throw new Error('the run loop did not get under way');
  process.exit(7);
}

main();
