// SPDX-License-Identifier: MIT
/* Recognises recordings of broadcasts among files, and scans them. */
import {tv} from './act.js'
import {scan} from './connection.js'

const sync = 0x47
const packetSize = 188
const strides = [188, 192, 204]  // with 4 more bytes before each packet, or 16 after it
const fewest = 4  // packets in a row
const lookedAt = 65536  // bytes to check at the start
const named = /\.(ts|m2ts?|mts|trp|tp)$/i

/** True if consecutive packets start at a position. @param {Uint8Array} bytes @param {number} stride @param {number} start */
function hasPackets(bytes, stride, start) {
  const last = start + (fewest - 1) * stride
  if (last + packetSize > bytes.length) return false
  for (let at = start; at <= last; at += stride) if (bytes[at] !== sync) return false
  return true
}

/** True if bytes belong to an MPEG transport stream of any packet size. @param {Uint8Array} bytes */
export function isTransportStream(bytes) {
  for (let start = bytes.indexOf(sync); start >= 0; start = bytes.indexOf(sync, start + 1)) {
    if (strides.some(stride => hasPackets(bytes, stride, start))) return true
  }
  return false
}

/**
 * True if a file is a recording, judged by its content, or by its name if the content is too short or damaged at its
 * start.
 * @param {File} file
 */
export async function isRecording(file) {
  const bytes = new Uint8Array(await file.slice(0, lookedAt).arrayBuffer())
  return isTransportStream(bytes) || (named.test(file.name) && bytes.includes(0))
}

/**
 * Finds the services in a recording. It is read piece by piece, and may be of any length.
 * @param {File} file @param {{signal: AbortSignal, progress: (bytes: number) => void}} how
 * @return {Promise<import('../client.js').Scan>}
 */
export const scanned = (file, how) => scan(tv(), file, how)
