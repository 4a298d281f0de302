'use strict';

// Text arrives as it was written, whatever it is, whoever gets it, whatever the keyboard is set to.
// Of all combinations a choice runs in which everything meets everything else in pairs; all of them
// with DESKHAND_FULL=1, which takes half an hour.
const { describe, test } = require('node:test');
const { allCombinations, pairwiseCombinations } = require('../support/pairwise.js');
const { texts, withFewCharacters } = require('../support/texts.js');
const { circumstances, startTypingScene, typeAndCheck } = require('../support/typing.js');

const PLACES = { 'under a window manager': true, 'without a window manager': false };
const RECEIVERS = { 'a page': 'page', 'a terminal': 'terminal', 'an entry': 'entry' };

const factors = {
  place: Object.keys(PLACES),
  layout: ['us', 'de', 'fr', 'ru'],
  receiver: Object.keys(RECEIVERS),
  text: Object.keys(texts),
  circumstance: Object.keys(circumstances),
};

const isFull = process.env.DESKHAND_FULL;
const rows = isFull ? allCombinations(factors) : pairwiseCombinations(factors);

/**
 * A terminal does not tell when it has got to a key, so that no number of characters without keys
 * is safe but one that all spare keys together can take.
 */
const SAFE_FOR_TERMINALS = 70;

/** One row as a part of a test. */
async function typeRow(t, scene, { text, receiver, layout, circumstance }) {
  const title = `${text}, in ${receiver}, with a keyboard of ${layout}, ${circumstance}`;
  const row = { receiver: RECEIVERS[receiver], layout, circumstance };
  const isSafe = row.receiver !== 'terminal';
  const typed = isSafe ? texts[text] : withFewCharacters(texts[text], SAFE_FOR_TERMINALS);
  await t.test(title, () => typeAndCheck(scene, row, typed));
}

// Each on a server of its own.
describe('typeText', { concurrency: 2 }, () => {
  for (const [place, manager] of Object.entries(PLACES)) {
    test(`${place} has text arrive unchanged:`, async (t) => {
      const scene = await startTypingScene(t, { manager });
      for (const row of rows.filter((candidate) => candidate.place === place)) {
        await typeRow(t, scene, row);
      }
    });
  }
});
