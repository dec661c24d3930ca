// SPDX-License-Identifier: MIT
// Clients that connect, call, and connect again, for the given number of calls. Nothing in the server may grow.
import {Client, Server, until} from './server.js'

const clients = 100
const warmUp = 0.2  // share of the calls before memory is measured for the first time

const calls = [
  ['window.GetTVMode', []], ['window.SetChannel', [3, 0]], ['window.GetCurrentChannel_Name', []], ['window.SetSource', [31]],
  ['window.SetSource', [0]], ['tv.get', ['region']], ['tv.set', ['region', '2']], ['tv.set', ['region', '3']], ['tv.state', []],
  ['tv.run', ['GetSource']], ['events.subscribe', [['source', 'knob']]],
]

/** Random numbers from 0 to 1, exclusive. The same seed gives the same numbers. */
export function randomFrom(seed) {
  let state = seed >>> 0
  return () => {
    state = (Math.imul(state, 1664525) + 1013904223) >>> 0
    return state / 2 ** 32
  }
}

export async function soak(program, wanted, seed) {
  const server = await Server.start(program)
  const observer = await Client.connect(server)
  const random = randomFrom(seed)
  let begun = 0, answered = 0, connections = 0

  async function work(end) {
    while (begun < end) {
      const client = await Client.connect(server)
      ++connections
      for (let left = 50 + Math.floor(random() * 400); left > 0 && begun < end; --left) {
        ++begun
        await client.call(...calls[Math.floor(random() * calls.length)])
        ++answered
      }
      await client.close()
    }
  }

  async function run(end) {
    await Promise.all(Array.from({length: clients}, () => work(end)))
    await until(async () => (await observer.call('tv.sessions')).sessions.length === 1)
    return {memory: server.memory('VmRSS'), descriptors: server.descriptors()}
  }

  const before = await run(wanted * warmUp)
  const behind = await run(wanted)
  const left = (await observer.call('tv.sessions')).sessions.length - 1
  await observer.close()
  return {
    'calls': answered,
    'connections of the soak': connections,
    'bytes more': Math.max(0, behind.memory - before.memory),
    'descriptors more': behind.descriptors - before.descriptors,
    'sessions of the soak left behind': left,
    'status of the server behind the soak': await server.stop(),
  }
}
