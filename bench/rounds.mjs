// Rounds: in each, every contestant takes one picture. Times are compared within a round, so that
// what the machine does meanwhile meets all of them.
import { showsLess } from './contestants.mjs';
import { findFault } from './pictures.mjs';
import { REFERENCE, breathe, startContestant, startReference } from './players.mjs';
import { makeRandom, median, quantile, shuffled } from './statistics.mjs';

const WARM_UP = 10;
// Who takes longer takes part less often: enough for a median, and the others need not wait.
const SLOW_MS = 150;
const SLOW_TURN = 6;

async function warmUp(player) {
  const times = [];
  for (let index = 0; index < WARM_UP; ++index) {
    times.push((await player.time()).ms);
    if (index === 2 && median(times) > SLOW_MS) break;
  }
  return median(times);
}

/** Starts, checks and warms up `names`; those that cannot take part are told with the reason. */
async function startPlayers(names, size) {
  const reference = await startReference(size);
  const players = [{ ...reference, turn: 1 }];
  const failures = [];
  await warmUp(reference);
  const referencePicture = await reference.picture();
  for (const name of names) {
    let player;
    try {
      player = await startContestant(name, size);
      const picture = await player.picture();
      const fault =
        picture && (await findFault(picture, referencePicture, { showsLess: showsLess(name) }));
      if (fault) throw new Error(fault);
      const turn = (await warmUp(player)) > SLOW_MS ? SLOW_TURN : 1;
      players.push({ ...player, turn });
    } catch (error) {
      failures.push({ name, reason: error.message.split('\n')[0] });
      await player?.end();
    }
  }
  return { players, failures };
}

function summarise(name, shots, referenceShots) {
  const times = shots.map(({ ms }) => ms);
  const ratios = shots.map(({ round, ms }) => ms / referenceShots[round].ms);
  const busy = shots.map(({ busyMs }) => busyMs).filter((ms) => ms !== undefined);
  return {
    name,
    shots: shots.length,
    ratio: [0.5, 0.25, 0.75].map((q) => quantile(ratios, q)),
    ms: [0.5, 0.1, 0.9].map((q) => quantile(times, q)),
    busyMs: busy.length ? [0.5, 0.9].map((q) => quantile(busy, q)) : null,
    bytes: shots[0].bytes,
  };
}

/**
 * Runs `rounds` rounds of the reference and `names` on the display of the environment. `size`: of
 * the pictures, with the screen's own as `screen`. Returns a summary for each, and who could not
 * take part.
 */
export async function runRounds(names, size, rounds) {
  let { players, failures } = await startPlayers(names, size);
  const shots = new Map(players.map(({ name }) => [name, []]));
  const random = makeRandom(1);
  try {
    for (let round = 0; round < rounds; ++round) {
      const inTurn = players.filter(({ turn }) => round % turn === 0);
      // Shuffled, so that nobody always follows the same one.
      for (const player of shuffled(inTurn, random)) {
        await breathe();
        try {
          shots.get(player.name).push({ round, ...(await player.time()) });
        } catch (error) {
          if (player.name === REFERENCE) throw error;
          failures.push({ name: player.name, reason: `round ${round}: ${error.message}` });
          players = players.filter((other) => other !== player);
          shots.delete(player.name);
          await player.end();
        }
      }
    }
  } finally {
    await Promise.all(players.map((player) => player.end()));
  }
  const referenceShots = shots.get(REFERENCE);
  const rows = [...shots].map(([name, own]) => summarise(name, own, referenceShots));
  return { rows, failures };
}
