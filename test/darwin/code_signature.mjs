// Verifies the ad-hoc code signature of a Mach-O file: without a right one, a Mac with an Arm
// processor ends the process that touches the file's pages. Numbers in a signature are big-endian.
import { createHash } from 'node:crypto';

const superBlobMagic = 0xfade0cc0;
const codeDirectoryMagic = 0xfade0c02;
const codeDirectorySlot = 0;
const adHocFlag = 0x2;
const sha256 = { type: 2, size: 32 };

/** The code directory's bytes, or undefined. */
function findCodeDirectory(signature) {
  if (signature.length < 12 || signature.readUInt32BE(0) !== superBlobMagic) return undefined;
  const count = signature.readUInt32BE(8);
  for (let index = 0; index < count; ++index) {
    const entry = 12 + 8 * index;
    if (signature.readUInt32BE(entry) !== codeDirectorySlot) continue;
    const directory = signature.subarray(signature.readUInt32BE(entry + 4));
    return directory.readUInt32BE(0) === codeDirectoryMagic ? directory : undefined;
  }
  return undefined;
}

function readCodeDirectory(directory) {
  return {
    flags: directory.readUInt32BE(12),
    hashOffset: directory.readUInt32BE(16),
    pageCount: directory.readUInt32BE(28),
    codeLimit: directory.readUInt32BE(32),
    hashSize: directory.readUInt8(36),
    hashType: directory.readUInt8(37),
    pageSize: 1 << directory.readUInt8(39),
  };
}

function wrongPages(bytes, directory, { hashOffset, pageCount, codeLimit, pageSize }) {
  const wrong = [];
  for (let page = 0; page < pageCount; ++page) {
    const end = Math.min((page + 1) * pageSize, codeLimit);
    const actual = createHash('sha256').update(bytes.subarray(page * pageSize, end)).digest();
    const at = hashOffset + page * sha256.size;
    if (!actual.equals(directory.subarray(at, at + sha256.size))) wrong.push(page);
  }
  return wrong;
}

/** What is wrong with the signature that `command`, LC_CODE_SIGNATURE, describes: sentences. */
export function signatureProblems(bytes, command) {
  if (!command) return ['there is no code signature'];
  const start = Number(command.dataoff);
  const end = start + Number(command.datasize);
  const directory = findCodeDirectory(bytes.subarray(start, end));
  if (!directory) return ['the code signature has no code directory'];
  const fields = readCodeDirectory(directory);
  const problems = [];
  if (end !== bytes.length) problems.push('the code signature is not the end of the file');
  if (!(fields.flags & adHocFlag)) problems.push('the signature is not ad hoc');
  if (fields.codeLimit !== start) problems.push(`the signature covers ${fields.codeLimit} bytes`);
  if (fields.hashType !== sha256.type || fields.hashSize !== sha256.size) {
    return [...problems, `the hashes are of type ${fields.hashType}`];
  }
  if (fields.pageCount !== Math.ceil(fields.codeLimit / fields.pageSize)) {
    problems.push(`the signature covers ${fields.pageCount} pages of ${fields.pageSize}`);
  }
  const wrong = wrongPages(bytes, directory, fields);
  return [...problems, ...wrong.map((page) => `the hash of page ${page} is wrong`)];
}
