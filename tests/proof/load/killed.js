// SPDX-License-Identifier: MIT
// Servers that are killed while clients write: every acknowledged write must have been persisted.
import {mkdtempSync, rmSync} from 'node:fs'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {Client, Server, wait} from './server.js'
import {randomFrom} from './soak.js'

const writers = 4

/** Writes greater and greater numbers to a key. @return the last number sent and the last acknowledged. */
async function write(server, key, from) {
  const done = {sent: from, answered: from}
  try {
    const client = await Client.connect(server)
    for (;;) {
      await client.call('tv.setSetting', [key, ++done.sent])
      done.answered = done.sent
    }
  } catch {
    return done  // killed
  }
}

export async function killed(program, kills, seed) {
  const state = mkdtempSync(join(tmpdir(), 'load-'))
  const random = randomFrom(seed)
  let kept = Array(writers).fill(0)
  let lost = 0, answered = 0, behindAnswer = 0
  try {
    for (let kill = 0; kill < kills; ++kill) {
      const server = await Server.start(program, {state})
      const working = kept.map((from, at) => write(server, `load/${at}`, from))
      await wait(5 + random() * 100)
      await server.kill()
      const done = await Promise.all(working)
      const next = await Server.start(program, {state})
      const client = await Client.connect(next)
      const {settings} = await client.call('tv.settings')
      const found = done.map((_, at) => settings.find(({key}) => key === `load/${at}`)?.value ?? 0)
      lost += done.filter((one, at) => found[at] < one.answered || found[at] > one.sent).length
      const more = done.reduce((sum, one, at) => sum + one.answered - kept[at], 0)
      answered += more
      behindAnswer += more > 0 ? 1 : 0
      kept = found
      await client.close()
      await next.stop()
    }
  } finally {
    rmSync(state, {recursive: true, force: true})
  }
  return {'servers killed': kills, 'killed behind an answer': behindAnswer, 'writes answered': answered, 'writes lost': lost}
}
