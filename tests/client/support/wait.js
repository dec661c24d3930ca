// SPDX-License-Identifier: MIT
// Waiting for what a test can observe.
import {setTimeout as pause} from 'node:timers/promises'

/** Waits until a condition holds, and answers what it then answers; fails after ten seconds. */
export async function until(condition, what = String(condition)) {
  for (let tries = 0; tries < 2000; ++tries) {
    const answer = await condition()
    if (answer) return answer
    await pause(5)
  }
  throw new Error(`not within ten seconds: ${what}`)
}

/** What a function writes to the console, by one of its methods, instead of showing it. */
export function silenced(method, context) {
  const mocked = context.mock.method(console, method, () => {})
  return () => mocked.mock.calls.map(call => call.arguments.join(' '))
}
