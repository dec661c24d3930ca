// SPDX-License-Identifier: MIT
// All transcripts of the tree, on TVs of one kind.
import assert from 'node:assert/strict'
import {readdir, readFile} from 'node:fs/promises'
import {test} from 'node:test'
import {runTranscript} from '../../../virtualtv/console/client/transcript.js'

const directory = new URL('../../transcripts/', import.meta.url)

export const transcript = name => readFile(new URL(name, directory), 'utf8')

/** Adds a test for each transcript. @param make  makes a TV and connects to it */
export async function testTranscripts(where, make) {
  for (const name of (await readdir(directory)).filter(file => file.endsWith('.txt'))) {
    test(`${name} passes ${where}`, async t => {
      const tv = await make()
      t.after(() => tv.close())
      const result = await runTranscript(await transcript(name), tv, {name})
      assert.equal(result.diff, '')
      assert.deepEqual([result.findings, result.skipped], [[], []])
      assert.equal(result.passed, true)
    })
  }
}
