// SPDX-License-Identifier: MIT
// The real server, on a chosen port, so that it can be restarted there.
import {spawn} from 'node:child_process'
import {once} from 'node:events'

export const program = process.env.EMP_WINDOW

const running = new Set()

/** Ends the servers that a test has left, even if it failed. */
export function endServers() {
  for (const child of running) child.kill('SIGKILL')
}

/** Starts it, on a set in memory or in a state directory, and waits for its address. @return {address, port, kill, signal} */
export async function serve({port = 0, state, options = []} = {}) {
  if (!program) throw new Error('EMP_WINDOW is to name the program emp-window')
  const set = state ? ['--state', state, 'serve'] : ['serve', '--fresh']
  const child = spawn(program, [...set, '--listen', `127.0.0.1:${port}`, '--until-eof', ...options],
    {stdio: ['pipe', 'pipe', 'inherit']})
  running.add(child)
  child.on('exit', () => running.delete(child))
  const [line] = await once(child.stdout.setEncoding('utf8'), 'data')
  const address = /http:\/\/[^/]+/.exec(line)[0]
  const kill = async signal => {
    child.kill(signal)
    if (child.exitCode === null && child.signalCode === null) await once(child, 'exit')
  }
  return {address, port: Number(new URL(address).port), kill, signal: signal => child.kill(signal)}
}
