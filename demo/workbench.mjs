// A page to act on: what it shows is told by the page itself.
import { readFile } from 'node:fs/promises';
import { createServer } from 'node:http';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

import { until } from './desktop.mjs';

const page = path.join(path.dirname(fileURLToPath(import.meta.url)), 'workbench.html');

/** Serves the page on this machine alone. `state()`: what it last told, null before. */
export async function startWorkbench() {
  let state = null;
  const server = createServer(async (request, response) => {
    if (request.method === 'POST') {
      const parts = [];
      for await (const part of request) parts.push(part);
      state = JSON.parse(Buffer.concat(parts).toString());
      response.end();
    } else {
      response.setHeader('content-type', 'text/html');
      response.end(await readFile(page));
    }
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  return {
    url: `http://127.0.0.1:${server.address().port}/`,
    state: () => state,
    /** Resolves when the page has told something of which `isSo` holds. */
    async becomes(what, isSo) {
      await until(what, 20, () => state !== null && isSo(state));
    },
    stop() {
      server.closeAllConnections();
      server.close();
    },
  };
}

export const PARAGRAPH = [
  'The quick brown fox jumps over the lazy dog. Voix ambiguë d’un cœur qui préfère les jattes de kiwis.',
  'Falsches Üben von Xylophonmusik quält jeden größeren Zwerg. Ξεσκεπάζω την ψυχοφθόρα βδελυγμία.',
  'Съешь же ещё этих мягких французских булок, да выпей чаю. Chí lớn gặp nhau — “½ € ≠ ¼ £” → ✓',
  'דג סקרן שט בים מאוכזב ולפתע מצא חברה.',
].join('\n');

/** Acts on the page as a person would; returns what was done, a line each. */
export async function act(deskhand, workbench) {
  const done = [];
  const step = async (what, perform, isSo) => {
    const start = performance.now();
    perform();
    const milliseconds = performance.now() - start;
    await workbench.becomes(what, isSo);
    done.push({ step: what, milliseconds: milliseconds.toFixed(1) });
  };
  await workbench.becomes('the page is there', ({ places }) => places.field.x > 0);
  const { field, card, basket, list } = workbench.state().places;
  deskhand.mouseClick('left', field.x, field.y);
  await step(
    `typeText(${[...PARAGRAPH].length} characters of eight languages)`,
    () => deskhand.typeText(PARAGRAPH),
    ({ text }) => text === PARAGRAPH,
  );
  const all = process.platform === 'darwin' ? 'cmd+a' : 'ctrl+a';
  await step(
    `keyPress('${all}') selects it`,
    () => deskhand.keyPress(all),
    ({ selected }) => selected === PARAGRAPH,
  );
  await step(
    'mouseDrag drops a card into a basket',
    () => deskhand.mouseDrag(card.x, card.y, basket.x, basket.y),
    ({ hasDropped }) => hasDropped,
  );
  await step(
    'scroll(0, -8, …) turns the wheel over a list',
    () => deskhand.scroll(0, -8, list.x, list.y),
    ({ scrolledPx }) => scrolledPx > 0,
  );
  console.table(done);
  return done;
}
