'use strict';

// A capture of a server that has stopped, beside timers. Sends what happened, in order.
const addon = require('../../support/addon.js');

async function main() {
  await addon.captureDisplay([]);
  process.once('message', async () => {
    const events = [];
    let ticks = 0;
    const ticking = setInterval(() => (ticks += 1), 10);
    setTimeout(() => events.push('timer'), 200);
    await addon.captureDisplay([]).then(
      () => events.push('resolved'),
      () => events.push('rejected'),
    );
    clearInterval(ticking);
    process.send({ events, ticks });
    process.disconnect();
  });
  process.send('ready');
}

main();
