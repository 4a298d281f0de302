// Refuses a package without one of its binaries, or with another in its place; npm runs it before it packs.
import { createRequire } from 'node:module';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

const { inspectBinary } = createRequire(import.meta.url)('../lib/binary_file.js');

/** What the package brings along, and the command that makes it. */
const BINARIES = [
  { file: 'prebuilds/darwin-arm64/deskhand.node', format: 'Mach-O', arch: 'arm64', by: 'build:darwin' },
  { file: 'prebuilds/darwin-arm64/run_loop.node', format: 'Mach-O', arch: 'arm64', by: 'build:darwin' },
  { file: 'prebuilds/linux-x64/deskhand.node', format: 'ELF', arch: 'x64', by: 'build:linux' },
];

/** What is wrong with the binaries below a folder, a sentence each. */
export function findProblems(root) {
  return BINARIES.flatMap(({ file, format, arch, by }) => {
    const found = inspectBinary(path.join(root, file));
    if (!found) return [`${file} is missing: npm run ${by}`];
    if (!found.isWhole) return [`${file} was cut off: npm run ${by}`];
    if (found.format === format && found.arch === arch) return [];
    return [`${file} is not a binary of ${format} for ${arch}: npm run ${by}`];
  });
}

const self = fileURLToPath(import.meta.url);
if (process.argv[1] && path.resolve(process.argv[1]) === self) {
  const problems = findProblems(path.join(path.dirname(self), '..'));
  for (const problem of problems) console.error(`error: ${problem}`);
  process.exitCode = problems.length > 0 ? 1 : 0;
}
