'use strict';
// Starts the run loop and leaves, for good or with a picture under way: prints what it brought.
// usage: run_loop_ends.js idle|picture
const { doubles, addon, sceneWithDefaults } = require('../harness');
const { newRunLoop } = require('../run_loops');

doubles.begin(sceneWithDefaults({ mainQueue: 'run loop' }));
newRunLoop().start();
if (process.argv[2] === 'picture') {
  addon.captureDisplay([]).then(({ width }) => console.log(JSON.stringify({ width })));
} else {
  console.log('{}');
}
