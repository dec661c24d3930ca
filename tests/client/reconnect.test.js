// SPDX-License-Identifier: MIT
// Connections to the real server that break at any point: no event may be lost or duplicated, and no call sent twice.
import assert from 'node:assert/strict'
import {after, before, test} from 'node:test'
import {connect} from '../../virtualtv/console/client/client.js'
import {Proxy} from './support/proxy.js'
import {endServers, serve} from './support/server.js'
import {silenced, until} from './support/wait.js'

const rounds = 4  // commands of each conversation
let server
let observer
let commands  // how often each command ran, by its parameter
let last = 0  // number of the last event
before(async () => {
  server = await serve()
  observer = await connect(server.address)
  commands = new Map()
  const stop = observer.on('*', event => {
    last = Math.max(last, event.number)
    if (event.topic !== 'command' || event.state) return
    const key = String(event.parameters[0])
    commands.set(key, (commands.get(key) ?? 0) + 1)
  })
  await stop.ready
})
after(async () => {
  await observer.close()
  endServers()
})

let conversations = 0

/**
 * A client behind a proxy subscribes to everything and runs commands, each with a unique parameter, so that it can be
 * checked later which of them ran.
 */
async function converse(proxy) {
  const key = ++conversations * 1000
  const tv = await connect(proxy.address)
  const numbers = []
  const resyncs = []
  await tv.on('*', event => {
    numbers.push(event.number)
    if (event.resync) resyncs.push(event)
  }).ready
  const subscribed = {...proxy.passed}
  const outcomes = new Map()
  for (let round = 0; round < rounds; ++round) {
    await tv.window.GetChannel_Major(key + round)
      .then(() => outcomes.set(key + round, 'answered'), error => outcomes.set(key + round, error))
  }
  await observer.window.GetChannel_Major(0)
  await until(() => numbers.at(-1) >= last, 'the listener has caught up')
  await tv.close()
  return {numbers, resyncs, outcomes, subscribed}
}

function verify({numbers, resyncs, outcomes}, what) {
  numbers.forEach((number, at) => assert.equal(number, numbers[0] + at, `${what}: events ${numbers}`))
  assert.deepEqual(resyncs, [], what)
  for (const [key, outcome] of outcomes) {
    const runs = commands.get(String(key)) ?? 0
    if (outcome === 'answered') assert.equal(runs, 1, `${what}: ${key} was answered`)
    else if (outcome.sent) assert.ok(runs <= 1, `${what}: ${key} was sent`)
    else assert.fail(`${what}: ${outcome}`)
  }
}

/** Numbers from `first` on, evenly up to `end`. */
const spread = (first, end, count) => Array.from({length: count}, (_, at) => Math.round(first + at * (end - first) / count))

test('a connection cut at any byte loses no event, doubles none, and runs no command twice', async context => {
  silenced('warn', context)
  const whole = await new Proxy(server.port).listen()
  const uncut = await converse(whole)
  verify(uncut, 'uncut')
  whole.close()
  // A cut before the client is connected fails `connect`, so the handshake is left whole. The state comes in one large
  // piece; the commands and events behind it have the most cuts.
  const cuts = Object.entries({up: 350, down: 300}).flatMap(([direction, first]) => {
    const [second, end] = [uncut.subscribed[direction], whole.passed[direction]]
    return [...spread(first, second, 12), ...spread(second, end, 60)].map(bytes => ({[direction]: bytes}))
  })
  let broken = 0
  while (cuts.length > 0) {
    await Promise.all(cuts.splice(0, 6).map(async cut => {
      const proxy = await new Proxy(server.port, cut).listen()
      const what = `cut after ${JSON.stringify(cut)}`
      let told
      try {
        told = await converse(proxy)
      } catch (error) {
        assert.equal(error.name, 'EmpConnectionError', what)
      }
      if (told) verify(told, what)
      if (told && proxy.connections > 1) ++broken
      proxy.close()
    }))
  }
  assert.ok(broken > 60, `only ${broken} conversations were broken and went on`)
})

test('events that happen while the connection is broken are told after it', async context => {
  silenced('warn', context)
  const proxy = await new Proxy(server.port).listen()
  const tv = await connect(proxy.address)
  const numbers = []
  await tv.on('*', event => numbers.push(event.number)).ready
  proxy.cut()
  await until(() => !tv.connected)
  for (let i = 0; i < 50; ++i) await observer.window.GetChannel_Major(0)
  await until(() => tv.connected && numbers.at(-1) >= last, 'the listener has caught up')
  assert.ok(numbers.length > 50)
  numbers.forEach((number, at) => assert.equal(number, numbers[0] + at))
  await tv.close()
  proxy.close()
})

test('a server that is killed and comes back: what was in flight fails, the rest waits, listeners get the state', async context => {
  silenced('warn', context)
  let own = await serve()
  const tv = await connect(own.address)
  const before = tv.server
  const seen = []
  await tv.on('mode', event => seen.push(event)).ready
  await tv.set('main.mode', '1,1')
  await until(() => seen.length >= 2)
  // A latency holds the answer back, so that the call is in flight.
  await tv.set('latency.IServiceNavigation::GetTvMode', 60000)
  const observer = await connect(own.address)
  const calls = []
  await observer.on('call', event => calls.push(event)).ready
  const inFlight = assert.rejects(tv.window.GetTVMode(), {name: 'EmpConnectionError', sent: true})
  await until(() => calls.some(event => event.operation === 'IServiceNavigation::GetTvMode'))
  await observer.close()
  await own.kill('SIGKILL')
  await inFlight
  const waiting = tv.window.GetTVMode()
  own = await serve({port: own.port})
  assert.equal(await waiting, 1)
  await until(() => seen.at(-1).resync)
  assert.notEqual(tv.server, before)
  const count = seen.length
  await tv.set('main.mode', '1,1')
  await until(() => seen.length === count + 1)
  assert.ok(seen.at(-1).number > seen.at(-2).number)
  await tv.close()
})
