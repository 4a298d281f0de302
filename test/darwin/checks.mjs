// The checks of a macOS bundle. Each takes what readBundle() returns and gives the problems that
// it found, as sentences; none when all is well.
import { createRequire } from 'node:module';

import { replaceableFunctions, runtimeImports, weakLibrary } from './expected.mjs';
import { signatureProblems } from './code_signature.mjs';

const { v8: nodeApi } = createRequire(import.meta.url)('node-api-headers').symbols;
const nodeFunctions = new Set([...nodeApi.js_native_api_symbols, ...nodeApi.node_api_symbols]);

/** Whether a bundle may import the symbol from there. */
const isAllowed = ({ systemImports }, name, library) =>
  [systemImports, runtimeImports].some((imports) => imports[library]?.includes(name));

/** What stands in one list only. */
function differences(kind, actual, wanted) {
  const [has, wants] = [new Set(actual), new Set(wanted)];
  return [
    ...[...has].filter((name) => !wants.has(name)).map((name) => `unexpected ${kind}: ${name}`),
    ...[...wants].filter((name) => !has.has(name)).map((name) => `missing ${kind}: ${name}`),
  ];
}

const only = (commands, name) => commands.find(({ cmd }) => cmd === name);

export function checkFileKind({ header }) {
  const problems = [];
  if (header.cpu !== 'ARM64') problems.push(`the processor is ${header.cpu}`);
  if (header.kind !== 'BUNDLE') problems.push(`the kind of file is ${header.kind}`);
  if (!header.flags.includes('TWOLEVEL')) problems.push('imports do not name their library');
  return problems;
}

export function checkExports({ exports, expected }) {
  return differences('export', exports.keys(), expected.exportedFunctions);
}

/** The version function is two instructions, `mov w0, #version` and `ret`. */
export function checkNodeApiVersion({ bytes, exports }) {
  const address = exports.get('node_api_module_get_api_version_v1');
  if (address === undefined) return ['there is no version function'];
  // A bundle is laid out from address 0, and its first segment from the file's first byte.
  const [load, end] = [bytes.readUInt32LE(address), bytes.readUInt32LE(address + 4)];
  const immediate = (load >>> 5) & 0xffff;
  const isLoad = (load & 0xffe0001f) >>> 0 === 0x52800000;
  if (!isLoad || end !== 0xd65f03c0) return ['the version function does more than return a number'];
  return immediate === 8 ? [] : [`the Node-API version is ${immediate}`];
}

export function checkSystemVersion({ commands }) {
  const version = only(commands, 'LC_BUILD_VERSION');
  if (!version) return ['there is no system version'];
  const problems = [];
  if (version.platform !== 'macos') problems.push(`the platform is ${version.platform}`);
  if (version.minos !== '14.0') problems.push(`the oldest system is ${version.minos}`);
  if (version.sdk !== '14.0') problems.push(`the SDK is ${version.sdk}`);
  return problems;
}

export function checkLibraries({ libraries, expected }) {
  const wantedLibraries = { ...expected.systemImports, ...runtimeImports };
  const problems = differences(
    'library',
    libraries.map(({ name }) => name),
    Object.keys(wantedLibraries),
  );
  for (const { cmd, name } of libraries) {
    const wanted = name === weakLibrary ? 'LC_LOAD_WEAK_DYLIB' : 'LC_LOAD_DYLIB';
    if (cmd !== wanted) problems.push(`${name} is loaded by ${cmd}`);
  }
  return problems;
}

function importProblem({ name, library, weak }, expected) {
  if (nodeFunctions.has(name)) return library === 'any' ? undefined : `${name} is from ${library}`;
  if (replaceableFunctions.includes(name)) {
    return library === 'replaceable' ? undefined : `${name} is not replaceable`;
  }
  if (!isAllowed(expected, name, library)) return `unexpected import: ${name} from ${library}`;
  const shouldBeWeak = library === weakLibrary;
  return weak === shouldBeWeak ? undefined : `${name} is ${weak ? '' : 'not '}imported weakly`;
}

export function checkImports({ imports, expected }) {
  const problems = imports
    .map((entry) => importProblem(entry, expected))
    .filter((problem) => problem !== undefined);
  const present = new Set(imports.map(({ name, library }) => `${name} from ${library}`));
  for (const [library, names] of Object.entries(expected.systemImports)) {
    const absent = names.filter((name) => !present.has(`${name} from ${library}`));
    problems.push(...absent.map((name) => `missing import: ${name} from ${library}`));
  }
  return problems;
}

export function checkSelectors({ selectors, expected }) {
  return differences('selector', selectors, expected.selectors);
}

export function checkFixups({ commands }) {
  const problems = [];
  if (!only(commands, 'LC_DYLD_CHAINED_FIXUPS')) problems.push('there are no chained fixups');
  const old = commands.filter(({ cmd }) => cmd.startsWith('LC_DYLD_INFO'));
  return [...problems, ...old.map(({ cmd }) => `there are fixups of the old kind: ${cmd}`)];
}

export function checkSignature({ bytes, commands }) {
  return signatureProblems(bytes, only(commands, 'LC_CODE_SIGNATURE'));
}

/** No path in the file but those of the libraries: none of the machine that built it. */
export function checkPaths({ bytes, libraries }) {
  const names = new Set(libraries.map(({ name }) => name));
  const paths = bytes.toString('latin1').match(/\/[\w.+@~-]{2,}(?:\/[\w.+@~-]+)+/g) ?? [];
  // Code may look like a short path by chance.
  const foreign = paths.filter((path) => path.length >= 8 && !names.has(path));
  return foreign.map((path) => `a path: ${path}`);
}
