// SPDX-License-Identifier: MIT
// Waits for conditions that a test can observe.
import {setTimeout as pause} from 'node:timers/promises'

/** Waits until a condition holds, and returns its value; fails after ten seconds. */
export async function until(condition, what = String(condition)) {
  for (let tries = 0; tries < 2000; ++tries) {
    const answer = await condition()
    if (answer) return answer
    await pause(5)
  }
  throw new Error(`not within ten seconds: ${what}`)
}

/** Captures what is written by a method of the console. */
export function silenced(method, context) {
  const mocked = context.mock.method(console, method, () => {})
  return () => mocked.mock.calls.map(call => call.arguments.join(' '))
}
