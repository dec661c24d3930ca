// SPDX-License-Identifier: MIT
// The module in the package: it has the state after its start, and lacks the parts that only the start needs.
import assert from 'node:assert/strict'
import {readFile} from 'node:fs/promises'
import {test} from 'node:test'
import {moduleOf, sectionsOf} from '../../virtualtv/console/package/sections.mjs'
import {started} from '../../virtualtv/console/package/started.mjs'
import {createTv, urlOf} from './support/package.js'

const own = await readFile(new URL(urlOf('emp-window.wasm')))
const text = word => [word.length, ...Buffer.from(word)]

/** Makes a module that calls a function of its host when it starts. */
const asking = name => moduleOf([
  {id: 1, body: Buffer.from([1, 0x60, 0, 0])},
  {id: 2, body: Buffer.from([2, ...text('host'), ...text(name), 0, 0, ...text('env'), ...text('memory'), 2, 0, 1])},
  {id: 3, body: Buffer.from([1, 0])},
  {id: 7, body: Buffer.from([1, ...text('_initialize'), 0, 1])},
  {id: 10, body: Buffer.from([1, 4, 0, 0x10, 0, 0x0b])},
])

test('the module offers what clients call, and nothing that it was laid with', () => {
  const names = WebAssembly.Module.exports(new WebAssembly.Module(own)).map(({name}) => name)
  for (const name of ['connect', 'disconnect', 'elapse', 'place', 'post', 'start', 'take']) assert.ok(names.includes(name), name)
  for (const name of ['_initialize', 'main', 'malloc', 'free', 'sbrk']) assert.ok(!names.includes(name), name)
})

test('sections are put together as they were', () => {
  assert.ok(own.equals(moduleOf(sectionsOf(own))))
})

test('a start that asks what differs from one load to another is refused', () => {
  assert.throws(() => started(asking('getentropy')), /the start of the module calls getentropy/)
})

test('TVs of one module have chance and time of their own', async () => {
  const [one, other] = [await createTv(), await createTv()]
  assert.notEqual(one.server, other.server)
  const before = Date.now()
  const told = new Promise(resolve => one.on('command', event => { if (event.command) resolve(event) }))  // the state comes first
  await one.window.GetTVMode()
  const event = await told
  assert.ok(event.time >= before - 1 && event.time <= Date.now() + 1, `${event.time} is not from ${before} on`)
  await Promise.all([one.close(), other.close()])
})
