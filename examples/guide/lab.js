// SPDX-License-Identifier: MIT
// node lab.js REPORT ADDRESS... -- TRANSCRIPT...: runs transcripts on the sets of a lab in parallel, each on the next
// free set, and writes a report in JUnit's XML format. Each set is restored afterwards. A set that can't be used leaves
// the lab; the others run the rest. EMP_WINDOW_TOKEN contains the token of the sets, if they have one. The status is 1
// if a transcript failed or a set could not be used, and 2 if nothing could be started.
import {readFile, writeFile} from 'node:fs/promises'
import {connect} from 'emp-window'
import {junitReport, runTranscript} from 'emp-window/transcript'

const [report, ...rest] = process.argv.slice(2)
const addresses = rest.slice(0, Math.max(rest.indexOf('--'), 0))
const waiting = rest.slice(addresses.length + 1)
const token = process.env.EMP_WINDOW_TOKEN
const results = []

function refuse(reason) {
  console.error(reason)
  process.exit(2)
}

/** A result like those of `runTranscript`, for what could not be run. */
function failure(name, {message}) {
  const step = {line: 1, input: 'run', passed: false, failure: message, seconds: 0}
  return {name, passed: false, steps: [step], findings: [], diff: `${name}: ${message}\n`}
}

async function runOn(tv, name, file) {
  const before = await tv.snapshot()
  try {
    return await runTranscript(await readFile(file, 'utf8'), tv, {name})
  } catch (error) {
    return failure(name, error)
  } finally {
    await tv.clearFaults()
    await tv.restore(before)
  }
}

/** Runs waiting transcripts on a set until there are none, each over a connection of its own. */
async function work(address) {
  while (waiting.length > 0) {
    let name = address
    let tv
    try {
      tv = await connect(address, {token})
      const file = waiting.shift()
      if (file === undefined) return  // another set has taken the last one meanwhile
      name = `${file} on ${address}`
      results.push(await runOn(tv, name, file))
    } catch (error) {
      results.push(failure(name, error))
      return
    } finally {
      await tv?.close()
    }
  }
}

if (addresses.length === 0 || waiting.length === 0) refuse('usage: node lab.js REPORT ADDRESS... -- TRANSCRIPT...')
await writeFile(report, '').catch(({message}) => refuse(message))
process.once('SIGINT', () => {  // sets in use are restored first
  for (const file of waiting.splice(0)) results.push(failure(file, new Error('interrupted')))
})
await Promise.all(addresses.map(work))
for (const file of waiting) results.push(failure(file, new Error('no set is left to run it')))
await writeFile(report, junitReport(results))
const failed = results.filter(({passed}) => !passed)
for (const {diff} of failed) process.stdout.write(diff)
console.log(`transcripts: ${results.length - failed.length} passed, ${failed.length} failed`)
process.exitCode = failed.length === 0 ? 0 : 1
