// SPDX-License-Identifier: MIT
/*
 * Decompresses data in the format `deflate` (RFC 1951) synchronously, which browsers only do asynchronously.
 */

const mostBits = 15  // longest code
const ends = 256  // the symbol that ends a block

// Base values of the length symbols, from 257 on, and of the distance symbols, and their numbers of extra bits.
const lengths = [3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 15, 17, 19, 23, 27, 31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258]
const lengthBits = [0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0]
const distances = [1, 2, 3, 4, 5, 7, 9, 13, 17, 25, 33, 49, 65, 97, 129, 193, 257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145,
  8193, 12289, 16385, 24577]
const distanceBits = [0, 0, 0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13]
// The order of the code length codes.
const order = [16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15]

/** A table indexed by the next bits of the stream, with `symbol << 4 | bits of its code`. @param sizes  bits of each code */
function tableOf(sizes) {
  const bits = Math.max(1, ...sizes)
  const next = new Uint16Array(mostBits + 2)
  for (const size of sizes) if (size > 0) ++next[size + 1]
  for (let size = 1; size <= mostBits; ++size) next[size + 1] += next[size]
  // Codes of one size are consecutive. The first code of the next size is twice the following number.
  const first = new Uint16Array(mostBits + 1)
  for (let size = 1, code = 0; size <= mostBits; ++size) {
    first[size] = code
    code = (code + next[size + 1] - next[size]) << 1
  }
  const entries = new Uint16Array(1 << bits)
  sizes.forEach((size, symbol) => {
    if (size === 0) return
    let reversed = 0
    for (let at = 0, code = first[size]++; at < size; ++at) reversed |= ((code >> at) & 1) << (size - 1 - at)
    for (let at = reversed; at < entries.length; at += 1 << size) entries[at] = symbol << 4 | size
  })
  return {entries, mask: entries.length - 1}
}

const fixed = () => ({
  literals: tableOf([...Array(144).fill(8), ...Array(112).fill(9), ...Array(24).fill(7), ...Array(8).fill(8)]),
  distances: tableOf(Array(30).fill(5)),
})

/** The bits of a stream, starting with the lowest bit of each byte. */
class Bits {
  #bytes
  #at = 0
  #held = 0
  #count = 0

  constructor(bytes) {
    this.#bytes = bytes
  }

  take(count) {
    this.#fill(count)
    const value = this.#held & ((1 << count) - 1)
    this.#drop(count)
    return value
  }

  symbol({entries, mask}) {
    this.#fill(mostBits)
    const entry = entries[this.#held & mask]
    this.#drop(entry & 15)
    return entry >> 4
  }

  /** Reads whole bytes, after skipping the rest of the current one. */
  wholeBytes(count) {
    this.#at -= this.#count >> 3
    this.#held = this.#count = 0
    this.#at += count
    return this.#bytes.subarray(this.#at - count, this.#at)
  }

  #fill(count) {
    while (this.#count < count) {
      this.#held |= this.#bytes[this.#at++] << this.#count  // zeros follow the end
      this.#count += 8
    }
  }

  #drop(count) {
    this.#held >>>= count
    this.#count -= count
  }
}

/** Reads the tables of a block. */
function tablesIn(bits) {
  const literals = bits.take(5) + 257
  const all = literals + bits.take(5) + 1
  const sizesOfSizes = Array(19).fill(0)
  for (let at = 0, count = bits.take(4) + 4; at < count; ++at) sizesOfSizes[order[at]] = bits.take(3)
  const table = tableOf(sizesOfSizes)
  const sizes = []
  while (sizes.length < all) {
    const symbol = bits.symbol(table)
    if (symbol < 16) sizes.push(symbol)
    else if (symbol === 16) sizes.push(...Array(bits.take(2) + 3).fill(sizes.at(-1)))
    else sizes.push(...Array(symbol === 17 ? bits.take(3) + 3 : bits.take(7) + 11).fill(0))
  }
  return {literals: tableOf(sizes.slice(0, literals)), distances: tableOf(sizes.slice(literals))}
}

/** Writes a block into `bytes` from `at` on. @return the position after it */
function writeBlock(bits, tables, bytes, at) {
  for (;;) {
    const symbol = bits.symbol(tables.literals)
    if (symbol < ends) {
      bytes[at++] = symbol
    } else if (symbol === ends) {
      return at
    } else {
      const length = lengths[symbol - 257] + bits.take(lengthBits[symbol - 257])
      const back = bits.symbol(tables.distances)
      const from = at - distances[back] - bits.take(distanceBits[back])
      for (let i = 0; i < length; ++i) bytes[at++] = bytes[from + i]
    }
  }
}

/** Decompresses data of `size` bytes. Nothing is verified, so the data must be complete. */
export function inflate(compressed, size) {
  const bytes = new Uint8Array(size)
  const bits = new Bits(compressed)
  let at = 0
  for (let isLast = false; !isLast;) {
    isLast = bits.take(1) === 1
    const kind = bits.take(2)
    if (kind === 0) {
      const head = bits.wholeBytes(4)
      const stored = bits.wholeBytes(head[0] | head[1] << 8)
      bytes.set(stored, at)
      at += stored.length
    } else {
      at = writeBlock(bits, kind === 1 ? fixed() : tablesIn(bits), bytes, at)
    }
  }
  return bytes
}
