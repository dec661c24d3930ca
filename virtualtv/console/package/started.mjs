// SPDX-License-Identifier: MIT
/*
 * Runs the start of a module, and replaces the module's initial memory with the memory after the start. A set from that
 * module is complete when it is loaded: its services are in the database, and the tables are read.
 */
import {moduleOf, numberAt, numberBytes, sectionsOf} from './sections.mjs'

const pages = 128  // initial pages of memory, as in the client
const pageSize = 65536
const stackSize = 2 ** 20  // as the module is linked
const gap = 8  // up to this many zeros cost less than another segment
const sections = {export: 7, global: 6, data: 11}
const starting = ['_initialize', 'main', 'malloc', 'free', 'sbrk']  // exports used only by this file

/**
 * The only system functions that the start may use: the environment, which it does not get, and the time, which is 0.
 * SQLite seeds its random numbers with the time. It uses them in headers of journals, which are in memory here.
 */
function answersFor(memory) {
  const well = 0
  const noSuchSystem = 52
  return {
    environ_sizes_get: () => noSuchSystem,
    clock_time_get(_clock, _precision, place) {
      new DataView(memory.buffer).setBigUint64(place, 0n, true)
      return well
    },
  }
}

/** The start may use nothing else of its host, since any value would become part of the module for everybody. */
function hostOf(module, memory) {
  const imports = {}
  const answers = answersFor(memory)
  for (const {module: from, name, kind} of WebAssembly.Module.imports(module)) {
    const refused = () => { throw new Error(`the start of the module calls ${name}`) }
    imports[from] ??= {}
    imports[from][name] = kind === 'memory' ? memory : (answers[name] ?? refused)
  }
  return imports
}

/** Clears the free memory of the heap, which held temporary texts and trees. */
function clearHeap({malloc, free, sbrk}, bytes) {
  const end = sbrk(0)
  const taken = []
  for (let size = 65536; size >= 8; size /= 2) {
    for (;;) {
      const place = malloc(size)
      taken.push(place)
      if (place + size > end) break  // the heap has grown
      bytes.fill(0, place, place + size)
    }
  }
  taken.forEach(free)
}

/** Clears the stack, which is unused between calls. Its top is the value of the first global. */
function clearStack(module, bytes) {
  const {body} = sectionsOf(module).find(({id}) => id === sections.global)
  const constant = numberAt(body, 0).end + 2  // after type and mutability
  if (body[constant] !== 0x41) throw new Error("the module's first global is not the pointer to its stack")
  const top = numberAt(body, constant + 1).value
  bytes.fill(0, top - stackSize, top)
}

/** Encodes a signed number, for addresses below 2 GiB. */
function placeBytes(value) {
  const bytes = numberBytes(value)
  const last = bytes.pop()
  return last < 64 ? [...bytes, last] : [...bytes, last | 128, 0]
}

/** The parts of memory that are not zero: [start, end], in order. */
function filledParts(bytes) {
  const parts = []
  let end = -gap
  for (let at = 0; at < bytes.length; ++at) {
    if (bytes[at] === 0) continue
    if (at - end < gap) parts.at(-1)[1] = at + 1
    else parts.push([at, at + 1])
    end = at + 1
  }
  return parts
}

function dataOf(bytes) {
  const parts = filledParts(bytes)
  const segments = parts.flatMap(([start, end]) =>
    [Buffer.from([0, 0x41, ...placeBytes(start), 0x0b, ...numberBytes(end - start)]), bytes.subarray(start, end)])
  return Buffer.concat([Buffer.from(numberBytes(parts.length)), ...segments])
}

/** The export section without the exports used only by this file. */
function exportsOf(body) {
  const kept = []
  let {value: count, end: at} = numberAt(body, 0)
  for (; count > 0; --count) {
    const start = at
    const {value: size, end} = numberAt(body, at)
    at = numberAt(body, end + size + 1).end
    if (!starting.includes(body.toString('utf8', end, end + size))) kept.push(body.subarray(start, at))
  }
  return Buffer.concat([Buffer.from(numberBytes(kept.length)), ...kept])
}

/** @param bytes  a module, as a Buffer  @return the module in the state after its start */
export function started(bytes) {
  const module = new WebAssembly.Module(bytes)
  const memory = new WebAssembly.Memory({initial: pages, maximum: 2 ** 31 / pageSize})
  const {exports} = new WebAssembly.Instance(module, hostOf(module, memory))
  exports._initialize()
  exports.main(0, 0)
  if (memory.buffer.byteLength > pages * pageSize) throw new Error('the start of the module takes more memory than there is')
  const left = new Uint8Array(memory.buffer)
  clearHeap(exports, left)
  clearStack(bytes, left)
  return moduleOf(sectionsOf(bytes).map(({id, body}) => {
    if (id === sections.data) return {id, body: dataOf(left)}
    return {id, body: id === sections.export ? exportsOf(body) : body}
  }))
}
