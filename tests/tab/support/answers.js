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

/** Where two TVs differ first, for a person; undefined where they don't. */
export function differenceIn(calls, wanted, answers) {
  const at = calls.findIndex((_, number) => wanted[number] !== answers[number])
  if (at < 0) return undefined
  return `call ${at}, ${JSON.stringify(calls[at]).slice(0, 400)}, is answered\n${answers[at]}\nnot\n${wanted[at]}`
}
