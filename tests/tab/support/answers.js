// SPDX-License-Identifier: MIT
// What TVs answer to calls, be they on a server or in memory, in Node or in a page.

const atOnce = 500  // calls that are under way

/** An answer as a text: the result, or the error. */
const answerOf = (tv, [method, params]) => tv.call(method, params).then(result => JSON.stringify(result),
  ({code, message, data}) => JSON.stringify({code, message, data}))

/** @param calls  [method, parameters] of each  @return the answers, as texts */
export async function answersOf(tv, calls) {
  const answers = []
  for (let at = 0; at < calls.length; at += atOnce) {
    answers.push(...await Promise.all(calls.slice(at, at + atOnce).map(call => answerOf(tv, call))))
  }
  return answers
}

// Each has words of its own for why it reaches no files.
const noFiles = 'clients reach no files unless the server is started with --files'
const noFilesInMemory =
  'a TV in memory reaches no files; tv.import, tv.restore and tv.check take what is in one, tv.snapshot answers it'

/**
 * Where a TV in memory does not do what the program does, for a person; undefined where it does.
 * @param wanted  the program's answers
 */
export function differenceIn(calls, wanted, answers) {
  const at = calls.findIndex((_, number) => wanted[number].replaceAll(noFiles, noFilesInMemory) !== answers[number])
  if (at < 0) return undefined
  return `call ${at}, ${JSON.stringify(calls[at]).slice(0, 400)}, is answered\n${answers[at]}\nnot\n${wanted[at]}`
}
