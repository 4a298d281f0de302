'use strict';

// Text arrives as it was written, whatever it is, whoever gets it, whatever the keyboard is set to.
// Of all combinations a choice runs in which everything meets everything else in pairs; all of them
// with DESKHAND_FULL_MATRIX=1, which takes an hour.
const { test } = require('node:test');
const { allCombinations, pairwiseCombinations } = require('../support/pairwise.js');
const { texts } = require('../support/texts.js');
const { circumstances, startTypingScene, typeAndCheck } = require('../support/typing.js');

const MANAGERS = { 'under a window manager': true, 'without a window manager': false };

const factors = {
  place: Object.keys(MANAGERS),
  layout: ['us', 'de', 'fr', 'ru'],
  receiver: ['page', 'terminal', 'entry'],
  text: Object.keys(texts),
  circumstance: Object.keys(circumstances),
};

const isFull = process.env.DESKHAND_FULL_MATRIX === '1';
const rows = isFull ? allCombinations(factors) : pairwiseCombinations(factors);

for (const [place, manager] of Object.entries(MANAGERS)) {
  test(`${place}, text arrives unchanged:`, async (t) => {
    const scene = await startTypingScene(t, { manager });
    for (const row of rows.filter((candidate) => candidate.place === place)) {
      const { circumstance, layout, receiver, text } = row;
      await t.test(`${text}, in a ${receiver}, by a keyboard of ${layout}, ${circumstance}`, () =>
        typeAndCheck(scene, row, texts[text]),
      );
    }
  });
}
