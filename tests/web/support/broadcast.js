// SPDX-License-Identifier: MIT
// Recordings of broadcasts, composed from tables: transport streams with services, their names and tracks.

const packetSize = 188
const network = 9018
const stream = 2

/** The checksum at the end of a section. */
function checksum(bytes) {
  let value = 0xffffffff
  for (const byte of bytes) {
    value ^= byte << 24
    for (let bit = 0; bit < 8; ++bit) value = value & 0x80000000 ? (value << 1) ^ 0x04c11db7 : value << 1
  }
  return word(value >>> 16).concat(word(value & 0xffff))
}

const word = value => [value >> 8 & 0xff, value & 0xff]
const text = value => [...Buffer.from(value)]
const descriptor = (tag, ...bytes) => [tag, bytes.length, ...bytes]
/** Prefixes bytes with their number. */
const lengthAnd = bytes => [bytes.length, ...bytes]
const name = value => lengthAnd(value === '' ? [] : [0x15, ...text(value)])

function section(table, extension, body) {
  const bytes = [table, ...word(0xb000 | body.length + 9), ...word(extension), 0xc1, 0, 0, ...body]
  return [...bytes, ...checksum(bytes)]
}

/** The packets of a section. */
function packets(pid, bytes) {
  const whole = [0, ...bytes]  // the first byte says that the section starts at once
  const made = []
  for (let at = 0; at < whole.length; at += packetSize - 4) {
    const piece = whole.slice(at, at + packetSize - 4)
    made.push([0x47, ...word((at === 0 ? 0x4000 : 0) | pid), 0x10 | at / (packetSize - 4) & 15, ...piece, ...Array(packetSize - 4 - piece.length).fill(0xff)])
  }
  return made
}

/** The table of a program. */
function mapOf({program, audio = [], subtitles = []}) {
  const es = (type, pid, descriptors) => [type, ...word(0xe000 | pid), ...word(0xf000 | descriptors.length), ...descriptors]
  const tracks = [
    ...audio.map((language, at) => es(4, program * 16 + 1 + at, descriptor(0x0a, ...text(language), 0))),
    ...subtitles.map((language, at) => es(6, program * 16 + 9 + at, descriptor(0x59, ...text(language), 0x10, 0, 1, 0, 1)))]
  return section(2, program, [...word(0xe000 | program * 16), ...word(0xf000), ...es(2, program * 16, []), ...tracks.flat()])
}

const filler = [0x47, 0x1f, 0xff, 0x10, ...Array(packetSize - 4).fill(0xff)]

/**
 * Makes a recording.
 * @param services  {program, name, kind (1: television, 2: radio), audio, subtitles (languages), isScrambled}
 * @param how  numbers of bytes: `front` before and `behind` after each packet, `start` before the first one; and
 *   `fillers`, the number of empty packets at the end
 */
export function recording(services, {front = 0, behind = 0, start = 0, fillers = 8} = {}) {
  const programs = services.flatMap(({program}) => [...word(program), ...word(0xe000 | 0x100 + program)])
  const descriptions = services.flatMap(({program, name: called, kind = 1, isScrambled}) => {
    const service = descriptor(0x48, kind, ...name('Coast'), ...name(called))
    return [...word(program), 0xfc, ...word((isScrambled ? 0x1000 : 0) | service.length), ...service]
  })
  const all = [
    packets(0, section(0, stream, programs)), packets(0x11, section(0x42, stream, [...word(network), 0xff, ...descriptions])),
    ...services.map(service => packets(0x100 + service.program, mapOf(service))), Array(fillers).fill(filler)]
  const around = packet => [...Array(front).fill(1), ...packet, ...Array(behind).fill(2)]
  return Buffer.from([...Array(start).fill(3), ...all.flat().flatMap(around)])
}
