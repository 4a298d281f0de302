'use strict';

const fs = require('node:fs');
const http = require('node:http');
const path = require('node:path');
const { atEnd } = require('./cleanup.js');

const PAGE = path.join(__dirname, 'input_page.html');
const PAUSE_MS = 20;

/** Longer than a page takes for an answer; a test that waits in vain is to fail, not to hang. */
const ANSWER_MS = 30_000;

async function bodyOf(request) {
  const parts = [];
  for await (const part of request) parts.push(part);
  return JSON.parse(Buffer.concat(parts).toString());
}

/**
 * Serves the page that reports its events. `ask(code)` is the value of an expression there, after
 * all events that the page had before; `events` are those reported so far, in their order.
 */
async function startPageServer(t) {
  const events = [];
  const questions = [];
  const waiting = new Map();
  let nextId = 0;

  const answerReport = async (request, response) => {
    const report = await bodyOf(request);
    for (const event of report.events) {
      if (event.seq !== events.length) throw new Error('events of the page are missing');
      events.push(event);
    }
    if (report.answer) {
      waiting.get(report.answer.id)(report.answer.value);
      waiting.delete(report.answer.id);
    }
    // The page asks again at once; so often is enough.
    const answer = () => response.end(JSON.stringify({ question: questions.shift() }));
    if (questions.length > 0) answer();
    else setTimeout(answer, PAUSE_MS);
  };
  const server = http.createServer((request, response) => {
    if (request.url === '/report') void answerReport(request, response);
    else if (request.url === '/') response.end(fs.readFileSync(PAGE));
    else response.writeHead(404).end();
  });
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  atEnd(t, () => {
    server.closeAllConnections();
    server.close();
  });
  return {
    url: `http://127.0.0.1:${server.address().port}/`,
    events,
    ask: (code) =>
      new Promise((resolve, reject) => {
        const id = nextId++;
        waiting.set(id, resolve);
        questions.push({ id, code });
        const isLate = new Error(`the page has not answered for ${ANSWER_MS} ms`);
        setTimeout(() => reject(isLate), ANSWER_MS).unref();
      }),
  };
}

module.exports = { startPageServer };
