// SPDX-License-Identifier: MIT
// The answers of TVs to calls, on a server or in memory, in Node or in a page.

const atOnce = 500  // calls in flight

/** An answer as a text: the result, or the error. */
const answerOf = (tv, [method, params]) => tv.call(method, params).then(result => JSON.stringify(result),
  ({code, message, data}) => JSON.stringify({code, message, data}))

/** @param calls  [method, parameters] each  @return the answers, as texts */
export async function answersOf(tv, calls) {
  const answers = []
  for (let at = 0; at < calls.length; at += atOnce) {
    answers.push(...await Promise.all(calls.slice(at, at + atOnce).map(call => answerOf(tv, call))))
  }
  return answers
}

// Each of them explains in its own words why clients reach no files.
const noFiles = 'clients reach no files unless the server is started with --files'
const noFilesInMemory =
  'a TV in memory reaches no files; tv.import, tv.restore and tv.check take what is in one, tv.snapshot answers it'

/**
 * Where a TV in memory differs from the program, for a person; undefined if it does not.
 * @param wanted  the program's answers
 */
export function differenceIn(calls, wanted, answers) {
  const at = calls.findIndex((_, number) => wanted[number].replaceAll(noFiles, noFilesInMemory) !== answers[number])
  if (at < 0) return undefined
  return `call ${at}, ${JSON.stringify(calls[at]).slice(0, 400)}, is answered\n${answers[at]}\nnot\n${wanted[at]}`
}
