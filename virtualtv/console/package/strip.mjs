/*
 * Leaves out what a module of WebAssembly does not need to run: custom sections, as the names of its functions.
 */

/** A number as the format has it, seven bits a byte. @return {value, end} */
function numberAt(bytes, at) {
  let value = 0
  for (let shift = 0; ; shift += 7) {
    const byte = bytes[at++]
    value += (byte & 127) * 2 ** shift
    if (byte < 128) return {value, end: at}
  }
}

/** @param bytes  a module, as a Buffer  @return it without custom sections */
export function strip(bytes) {
  const parts = [bytes.subarray(0, 8)]  // what tells the format and its version
  for (let at = 8; at < bytes.length;) {
    const {value: size, end} = numberAt(bytes, at + 1)
    if (bytes[at] !== 0) parts.push(bytes.subarray(at, end + size))
    at = end + size
  }
  return Buffer.concat(parts)
}
