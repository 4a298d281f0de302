'use strict';

const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const readline = require('node:readline');
const { atEnd } = require('./cleanup.js');
const { start } = require('./processes.js');

const root = path.join(__dirname, '..', '..');
const program =
  process.env.DESKHAND_PAINTER ?? path.join(root, 'build', 'unit', 'test', 'support', 'painter');

function hex(colour) {
  return colour.replace('#', '');
}

/** A folder that is gone when the test ends. */
function temporaryFolder(t) {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'deskhand-test-'));
  atEnd(t, () => fs.rmSync(folder, { recursive: true, force: true, maxRetries: 5 }));
  return folder;
}

/** A binary PPM file with 8 bits a colour, as painter.c writes it. */
function readPpm(file) {
  const bytes = fs.readFileSync(file);
  const [header, width, height] = /^P6\n(\d+) (\d+)\n255\n/.exec(bytes.toString('latin1', 0, 40));
  return { width: Number(width), height: Number(height), rgb: bytes.subarray(header.length) };
}

/** Paints on a server; see painter.c. Each function resolves when its effect is on the screen. */
function startPainter(t, env) {
  if (!fs.existsSync(program)) {
    throw new Error(`${program} is missing: cmake --preset unit && cmake --build --preset unit`);
  }
  const child = start(t, program, [], { env, stdio: ['pipe', 'pipe', 'pipe'] });
  const waiting = [];
  const settle = (answer) => waiting.shift()?.(answer);
  readline.createInterface({ input: child.stdout }).on('line', settle);
  child.on('exit', () => {
    while (waiting.length > 0) settle('error: the painter has ended');
  });
  child.stdin.on('error', () => {}); // what was asked is answered above

  const ask = (...words) =>
    new Promise((resolve) => {
      waiting.push(resolve);
      child.stdin.write(`${words.join(' ')}\n`);
    });
  const order = async (...words) => {
    const answer = await ask(...words);
    if (answer !== 'ok') throw new Error(`the painter cannot do "${words.join(' ')}": ${answer}`);
  };
  return {
    /** `wmClass` is 'instance/class'; a window that is not managed overrides the redirection. */
    window(name, { x, y, width, height, colour, wmClass = '-', managed = true }) {
      const manager = managed ? 'managed' : 'unmanaged';
      return order('window', name, x, y, width, height, hex(colour), wmClass, manager);
    },
    move: (name, x, y) => order('move', name, x, y),
    raise: (name) => order('raise', name),
    focus: (name) => order('focus', name),
    activate: (name) => order('activate', name),
    destroy: (name) => order('destroy', name),
    hide: (name) => order('hide', name),
    iconify: (name) => order('iconify', name),
    property: (name, atom, text) => order('property', name, atom, text),
    embed: (name, parent) => order('embed', name, parent),
    cursor: (name, colour) => order('cursor', name, hex(colour)),
    pointer: (x, y) => order('pointer', x, y),
    background: (colour) => order('background', hex(colour)),
    isManaged: async () => (await ask('managed')) === 'ok',
    /** The screen as the server has it: { width, height, rgb }. */
    async grab() {
      const file = path.join(temporaryFolder(t), 'screen.ppm');
      await order('grab', file);
      return readPpm(file);
    },
  };
}

module.exports = { startPainter, temporaryFolder };
