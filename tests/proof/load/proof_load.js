// SPDX-License-Identifier: MIT
// Puts the server under load and prints figures. The exit status is 1 when something was lost or left behind.
//
// node proof_load.js PROGRAM [--connections N] [--messages N] [--lists N] [--calls N] [--kills N] [--seed N]
import {parseArgs} from 'node:util'
import {abuse} from './abuse.js'
import {crowd} from './crowd.js'
import {killed} from './killed.js'
import {soak} from './soak.js'

const number = value => ({type: 'string', default: String(value)})
const {values, positionals: [program]} = parseArgs({
  allowPositionals: true,
  options: {connections: number(1000), messages: number(20), lists: number(800), calls: number(100_000), kills: number(20),
            seed: number(1)},
})
const [connections, messages, lists, calls, kills, seed] =
  ['connections', 'messages', 'lists', 'calls', 'kills', 'seed'].map(name => Number(values[name]))

const parts = [() => crowd(program, connections), () => abuse(program, messages, lists), () => soak(program, calls, seed),
               () => killed(program, kills, seed)]
for (const part of parts) {
  for (const [name, value] of Object.entries(await part())) {
    console.log(`figure: ${name} = ${value}`)
    if (value !== 0 && /missed|left behind|lost|status/.test(name)) process.exitCode = 1
  }
}
