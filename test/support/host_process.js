'use strict';

// The other side of host.js: a process that loads the addon and calls it as it is told.
const addon = require('./addon.js');

const orders = {
  call: ({ name, args }) => addon[name](...args),
  environment: ({ variables }) => {
    for (const [name, value] of Object.entries(variables)) {
      if (value === undefined) delete process.env[name];
      else process.env[name] = value;
    }
  },
};

async function answer(message) {
  let promise;
  try {
    promise = orders[message.order](message);
  } catch (error) {
    return { outcome: 'thrown', error };
  }
  try {
    return { outcome: 'returned', value: await promise };
  } catch (error) {
    return { outcome: 'rejected', error };
  }
}

process.on('message', async (message) => {
  process.send({ id: message.id, ...(await answer(message)) });
});
