'use strict';

// What the first bytes of a native binary say: made for which system and processor, and whether all of it is
// there. Loaders put it in words that mislead, and a binary that was cut off can end the process.

// Also read by versions of Node.js that are refused: no syntax that these do not know.
const fs = require('fs');

const ELF_MAGIC = 0x7f454c46;
const ELF_MACHINES = { 3: 'ia32', 40: 'arm', 62: 'x64', 183: 'arm64', 243: 'riscv64' };
const MACHO_64_MAGIC = 0xfeedfacf;
const MACHO_CPUS = { 0x01000007: 'x64', 0x0100000c: 'arm64' };
const ELF_64_HEADER_BYTES = 64;

/** The linker puts the table of sections last: a file that ends before it does was cut off. */
function endOfElf(head) {
  const tableOffset = Number(head.readBigUInt64LE(40));
  return tableOffset + head.readUInt16LE(58) * head.readUInt16LE(60);
}

function describeElf(head, size) {
  const isWide = head[4] === 2;
  const isLittle = head[5] === 1;
  const hasHeader = head.length === ELF_64_HEADER_BYTES;
  const machine =
    head.length < 20 ? undefined : isLittle ? head.readUInt16LE(18) : head.readUInt16BE(18);
  const isWhole = hasHeader && (!isWide || !isLittle || size >= endOfElf(head));
  return { format: 'ELF', arch: ELF_MACHINES[machine], isWhole };
}

/** @param head The first 64 bytes of the file, or all of a shorter one. */
function describeBinary(head, size) {
  if (head.length >= 8 && head.readUInt32LE(0) === MACHO_64_MAGIC) {
    return { format: 'Mach-O', arch: MACHO_CPUS[head.readUInt32LE(4)], isWhole: true };
  }
  if (head.length >= 8 && head.readUInt32BE(0) === ELF_MAGIC) return describeElf(head, size);
  return { format: undefined, arch: undefined, isWhole: size > 0 };
}

/**
 * The format ('ELF', 'Mach-O', or undefined for all else), the processor (undefined when it is another
 * one) and whether the file is whole; null when there is no such file. Throws when it cannot be read.
 */
function inspectBinary(file) {
  let descriptor;
  try {
    descriptor = fs.openSync(file, 'r');
  } catch (error) {
    if (error.code === 'ENOENT' || error.code === 'ENOTDIR') return null;
    throw error;
  }
  try {
    const head = Buffer.alloc(ELF_64_HEADER_BYTES);
    const length = fs.readSync(descriptor, head, 0, head.length, 0);
    return describeBinary(head.slice(0, length), fs.fstatSync(descriptor).size);
  } finally {
    fs.closeSync(descriptor);
  }
}

module.exports = { describeBinary, inspectBinary };
