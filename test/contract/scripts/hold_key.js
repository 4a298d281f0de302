'use strict';
// Makes one call of keyHold and prints its result or what it throws, if the process lives.
// usage: hold_key.js <arguments, as JavaScript>
const { doubles, addon, sceneWithDefaults } = require('../harness');

doubles.begin(sceneWithDefaults({}));
const args = new Function(`return ${process.argv[2]}`)();
try {
  console.log(addon.keyHold(...args));
} catch (error) {
  console.log(error.message);
}
