// SPDX-License-Identifier: MIT
// node lab.js REPORT ADDRESS... -- TRANSCRIPT...: runs transcripts on the sets of a lab in parallel, each on the next
// free set, and writes a report in JUnit's XML format. Each set is restored afterwards. The status is 1 if a transcript
// failed.
import {readFile, writeFile} from 'node:fs/promises'
import {basename} from 'node:path'
import {connect} from 'emp-window'
import {junitReport, runTranscript} from 'emp-window/transcript'

const [report, ...rest] = process.argv.slice(2)
const addresses = rest.slice(0, rest.indexOf('--'))
const waiting = rest.slice(addresses.length + 1)
const results = []

async function runOn(address, file) {
  const text = await readFile(file, 'utf8')
  const tv = await connect(address)
  const before = await tv.snapshot()
  try {
    results.push(await runTranscript(text, tv, {name: `${basename(file)} on ${address}`}))
  } finally {
    await tv.clearFaults()
    await tv.restore(before)
    await tv.close()
  }
}

await Promise.all(addresses.map(async address => {
  while (waiting.length > 0) await runOn(address, waiting.shift())
}))
await writeFile(report, junitReport(results))
const failed = results.filter(({passed}) => !passed)
for (const {diff} of failed) console.log(diff)
console.log(`transcripts: ${results.length - failed.length} passed, ${failed.length} failed`)
process.exitCode = failed.length === 0 ? 0 : 1
