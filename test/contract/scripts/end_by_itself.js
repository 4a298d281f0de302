'use strict';
// Starts a capture and leaves: the process lives until the capture has settled.
const { doubles, addon, sceneWithDefaults } = require('../harness');

doubles.begin(sceneWithDefaults({ mainQueue: { delayMs: 50 } }));
addon.captureDisplay([]).then(({ width }) => console.log(JSON.stringify({ width })));
