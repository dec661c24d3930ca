// SPDX-License-Identifier: MIT
/*
 * Splits a WebAssembly module into its sections, and joins sections to a module.
 */

/** Reads a number in the module's format, seven bits per byte. @return {value, end} */
export function numberAt(bytes, at) {
  let value = 0
  for (let shift = 0; ; shift += 7) {
    const byte = bytes[at++]
    value += (byte & 127) * 2 ** shift
    if (byte < 128) return {value, end: at}
  }
}

/** An unsigned number below 2^32 in the module's format. */
export function numberBytes(value) {
  const bytes = []
  for (; value > 127; value = Math.floor(value / 128)) bytes.push(value & 127 | 128)
  return [...bytes, value]
}

const head = 8  // bytes of format and version

/** @param bytes  a module, as a Buffer  @return [{id, body}], in order */
export function sectionsOf(bytes) {
  const sections = []
  for (let at = head; at < bytes.length;) {
    const {value: size, end} = numberAt(bytes, at + 1)
    sections.push({id: bytes[at], body: bytes.subarray(end, end + size)})
    at = end + size
  }
  return sections
}

export function moduleOf(sections) {
  const start = Buffer.from([0, 0x61, 0x73, 0x6d, 1, 0, 0, 0])
  return Buffer.concat([start, ...sections.flatMap(({id, body}) => [Buffer.from([id, ...numberBytes(body.length)]), body])])
}

/** Removes what a module does not need to run: custom sections, such as the names of its functions. */
export const strip = bytes => moduleOf(sectionsOf(bytes).filter(({id}) => id !== 0))
