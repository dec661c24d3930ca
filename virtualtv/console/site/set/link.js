// SPDX-License-Identifier: MIT
/*
 * A set as a link: its compressed snapshot follows the `#` of the page's address. That part is not sent to servers.
 */

const front = '#state='
const mostCharacters = 1_000_000  // longest link; some programs accept less
const mostBytes = 32 * 1024 * 1024  // largest snapshot

/** @param {Uint8Array} bytes */
function base64url(bytes) {
  let text = ''
  for (let at = 0; at < bytes.length; at += 32768) text += String.fromCharCode(...bytes.subarray(at, at + 32768))
  return btoa(text).replaceAll('+', '-').replaceAll('/', '_').replace(/=+$/, '')
}

/** @param {string} text */
function bytesOf(text) {
  return Uint8Array.from(atob(text.replaceAll('-', '+').replaceAll('_', '/')), letter => letter.charCodeAt(0))
}

/** @param {ReadableStream<Uint8Array<ArrayBuffer>>} stream @param {number} most @return {Promise<Uint8Array>} */
async function all(stream, most) {
  const pieces = []
  let size = 0
  const reader = stream.getReader()
  for (let piece = await reader.read(); !piece.done; piece = await reader.read()) {
    size += piece.value.length
    if (size > most) throw new Error(`it holds more than ${most} bytes`)
    pieces.push(piece.value)
  }
  return new Uint8Array(await new Blob(pieces).arrayBuffer())
}

/**
 * Creates the link to a snapshot.
 * @param {any} snapshot
 * @param {string} page  its address
 * @return {Promise<string>}
 * @throws {Error} if it is too long
 */
export async function linkTo(snapshot, page) {
  const stream = new Blob([JSON.stringify(snapshot)]).stream().pipeThrough(new CompressionStream('deflate-raw'))
  const link = page.replace(/#.*$/, '') + front + base64url(await all(stream, Infinity))
  if (link.length <= mostCharacters) return link
  throw new Error(`the link would have ${link.length.toLocaleString('en')} characters, more than ${mostCharacters.toLocaleString('en')}; send a snapshot as a file`)
}

/** @param {string} text */
async function unpacked(text) {
  try {
    const stream = new Blob([bytesOf(text)]).stream().pipeThrough(new DecompressionStream('deflate-raw'))
    return new TextDecoder('utf-8', {fatal: true}).decode(await all(stream, mostBytes))
  } catch (error) {
    const {message} = /** @type {Error} */ (error)
    throw new Error(/^it holds/.test(message) ? message : 'it is damaged or cut off')
  }
}

/**
 * Reads the set from the part of an address from `#` on.
 * @param {string} hash
 * @return {Promise<{snapshot?: any, problem?: string}>} empty if it has no set; `problem` says why it can't be read
 */
export async function stateIn(hash) {
  if (!hash.startsWith(front)) return {}
  try {
    return {snapshot: JSON.parse(await unpacked(hash.slice(front.length)))}
  } catch (error) {
    return {problem: error instanceof SyntaxError ? 'it is damaged or cut off' : /** @type {Error} */ (error).message}
  }
}
