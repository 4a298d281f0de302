'use strict';
// Calls process.exit(7) with captures that are stuck. usage: exit_midway.js <where> <time scale>
const { doubles, addon, sceneWithDefaults, until } = require('../harness');

const stuck = {
  'main queue': {
    script: { mainQueue: 'stalled' },
    isStuck: () => doubles.leftovers().mainQueueBlocks === 2,
  },
  content: {
    script: { content: { answer: 'held' } },
    isStuck: () => doubles.leftovers().heldAnswers === 2,
  },
  image: {
    script: { image: { answer: 'held' } },
    isStuck: () => doubles.leftovers().heldAnswers === 2,
  },
  // Not stuck: the pictures come while the process ends.
  nowhere: {
    script: { image: { answer: 'held' } },
    isStuck: () => doubles.leftovers().heldAnswers === 2 && doubles.deliver('image') > 0,
  },
};

async function main(where, timeScale) {
  const { script, isStuck } = stuck[where];
  doubles.begin(sceneWithDefaults({ timeScale, ...script }));
  const settled = () => { process.stdout.write('settled'); };
  addon.captureDisplay([]).then(settled, settled);
  addon.captureRegion([], 0, 0, 10, 10, 20, 20).then(settled, settled);
  if (!await until(isStuck)) throw new Error('the captures did not get under way');
  process.exit(7);
}

main(process.argv[2], Number(process.argv[3]));
