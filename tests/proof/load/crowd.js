// SPDX-License-Identifier: MIT
// A great many connections at once, each with an engine. Half of them subscribe to everything while commands run.
import {Client, Server, until} from './server.js'

const commands = 200
const callers = 20

/** Counts the events of a subscriber, and gaps in their numbers, which are consecutive. */
class Listener {
  heard = 0
  last = 0
  lost = 0

  constructor(client) {
    client.heard = text => {
      const number = Number(/"number":(\d+)/.exec(text)[1])
      if (this.last && number !== this.last + 1) ++this.lost
      this.last = number
      ++this.heard
    }
  }
}

export async function crowd(program, connections) {
  const server = await Server.start(program, {options: ['--max-sessions', String(connections + 10)]})
  const first = await Client.connect(server)
  await first.call('window.GetTVMode')
  const before = server.memory('VmRSS')

  const clients = []
  for (let at = 0; at < connections; ++at) clients.push(await Client.connect(server))
  const modes = await Promise.all(clients.map(client => client.call('window.GetTVMode')))
  const bytes = Math.round((server.memory('VmRSS') - before) / connections)

  const listeners = clients.slice(0, connections / 2).map(client => new Listener(client))
  await Promise.all(clients.slice(0, connections / 2).map(client => client.call('events.subscribe', [['*']])))
  const replies = []
  for (let round = 0; round < commands / callers; ++round) {
    const chosen = clients.slice(-callers)
    replies.push(...await Promise.all(chosen.map((client, at) => client.call('window.SetChannel', [1 + (at + round) % 3, 0]))))
  }
  const {number} = await first.call('events.subscribe', [['fault']])
  await until(() => listeners.every(listener => listener.last === number))

  const heard = listeners.reduce((sum, listener) => sum + listener.heard, 0)
  const lost = listeners.reduce((sum, listener) => sum + listener.lost + (listener.last === number ? 0 : 1), 0)
  await Promise.all(clients.map(client => client.close()))
  await until(async () => (await first.call('tv.sessions')).sessions.length === 1)
  const left = (await first.call('tv.sessions')).sessions.length - 1
  await first.close()
  return {
    'connections served': modes.filter(({kind, value}) => kind === 'int' && value >= 0).length,
    'commands answered among them': replies.filter(({accepted}) => accepted).length,
    'events heard': heard,
    'subscribers that missed events': lost,
    'bytes a connection': bytes,
    'sessions left behind': left,
    'status of the server in the crowd': await server.stop(),
  }
}
