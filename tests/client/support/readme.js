// SPDX-License-Identifier: MIT
// The examples of the client's README, and functions to run them in a separate folder.
import assert from 'node:assert/strict'
import {spawnSync} from 'node:child_process'
import {readFile} from 'node:fs/promises'

const text = await readFile(new URL('../../../virtualtv/console/client/README.md', import.meta.url), 'utf8')

/** The examples, each {language, code}. */
export const blocks = [...text.matchAll(/^```(js|html)\n(.*?)^```$/gms)].map(([, language, code]) => ({language, code}))

/** The example that contains a text. */
export function example(part) {
  const found = blocks.filter(({code}) => code.includes(part))
  assert.equal(found.length, 1, `examples with '${part}'`)
  return found[0].code
}

/** The scripts of an example in HTML: the address of the one that it loads, and the text of the app's own. */
export function scriptsOf(html) {
  return {source: /<script src="([^"]+)"/.exec(html)?.[1], app: /<script type="module">(.*)<\/script>/s.exec(html)?.[1]}
}

/** Runs a file of a folder in Node. @param words  for Node, in front of the file's name @return what it printed */
export function runIn(directory, file, words = [], environment = {}) {
  const {stdout, stderr, status} = spawnSync(process.execPath, [...words, file],
    {cwd: directory, encoding: 'utf8', timeout: 60_000, env: {...process.env, ...environment, NODE_TEST_CONTEXT: undefined}})
  assert.equal(status, 0, `${file}: ${stdout}${stderr}`)
  return stdout
}
