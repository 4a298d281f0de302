// The package as npm packs it, for tests.
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

export const root = path.join(path.dirname(fileURLToPath(import.meta.url)), '..', '..');

/** Packs the package; `tarball`, and `folder`, which has it installed in node_modules. Gone with the test. */
export function packPackage(t) {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'deskhand-test-'));
  t.after(() => fs.rmSync(folder, { recursive: true, force: true }));
  const options = { cwd: root, encoding: 'utf8', stdio: ['ignore', 'pipe', 'ignore'] };
  execFileSync('npm', ['pack', '--ignore-scripts', '--pack-destination', folder], options);
  const [name] = fs.readdirSync(folder);
  const tarball = path.join(folder, name);
  const place = path.join(folder, 'node_modules', 'deskhand');
  fs.mkdirSync(place, { recursive: true });
  execFileSync('tar', ['-xzf', tarball, '-C', place, '--strip-components=1']);
  return { tarball, folder };
}
