// SPDX-License-Identifier: MIT
// The program that handles the posts natively: the reference.
import {spawn} from 'node:child_process'
import {createInterface} from 'node:readline'

/** @param program  bench_posted */
export function nativePoster(program) {
  const child = spawn(program, {stdio: ['pipe', 'pipe', 'inherit']})
  const lines = createInterface({input: child.stdout})[Symbol.asyncIterator]()
  const ask = async line => {
    child.stdin.write(`${line}\n`)
    const {value, done} = await lines.next()
    if (done) throw new Error(`${program} has ended`)
    return value
  }
  return {
    post: message => ask(`post ${message}`),
    time: async message => Number(await ask(`time ${message}`)),
    end: () => child.stdin.end(),
  }
}
