// SPDX-License-Identifier: MIT
// A TV in memory in Node 18, the oldest version that supports it, and the client's tests on a server there.
import assert from 'node:assert/strict'
import {execFileSync, spawnSync} from 'node:child_process'
import {existsSync} from 'node:fs'
import {mkdtemp, rm, writeFile} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {test} from 'node:test'
import {fileURLToPath} from 'node:url'
import {urlOf} from './support/package.js'

const program = join(process.env.EMP_WINDOW_CLIENT_PACKAGES ?? '', 'node18', 'node')
const skip = existsSync(program) ? false : 'there is no Node 18 for this machine'

/** Runs a script from a file, like apps and tests: a script on the command line can use more of Node. @return its
 *  output */
async function run(script) {
  const folder = await mkdtemp(join(tmpdir(), 'tab-node18-'))
  try {
    await writeFile(join(folder, 'app.mjs'), script)
    return execFileSync(program, [join(folder, 'app.mjs')], {encoding: 'utf8', timeout: 60_000,
      env: {...process.env, NODE_TEST_CONTEXT: undefined}})
  } finally {
    await rm(folder, {recursive: true})
  }
}

test('Node 18 makes a TV, runs commands at once and by promises, and ends', {skip}, async () => {
  assert.equal(await run(`
    import {createTv, installWindow} from '${urlOf('client.js')}'
    const tv = await createTv()
    const tvWindow = installWindow(globalThis, {tv, name: 'tvWindow'})
    const seen = []
    await tv.on('service', event => seen.push(event.number)).ready
    await tv.window.SetChannel(3, 0)
    const snapshot = await tv.snapshot()
    const again = await createTv({snapshot})
    console.log(process.version.split('.')[0], tvWindow.GetCurrentChannel_Name(), seen.length, await again.window.GetTVMode())
    await Promise.all([tv.close(), again.close()])`), 'v18 Lighthouse News 2 1\n')
})

test('all transcripts pass in Node 18', {skip}, async () => {
  assert.match(await run(`
    import {readFile, readdir} from 'node:fs/promises'
    import {createTv, runTranscript} from '${urlOf('client.js')}'
    const folder = new URL('${new URL('../transcripts/', import.meta.url)}')
    let passed = 0
    for (const name of await readdir(folder)) {
      const tv = await createTv()
      const result = await runTranscript(await readFile(new URL(name, folder), 'utf8'), tv, {name})
      if (result.passed && result.junit !== '') ++passed
      else console.log(result.diff)
      await tv.close()
    }
    console.log('passed', passed)`), /^passed [1-9]\d+\n$/)
})

test('the tests of the client and of the example project pass in Node 18', {skip}, () => {
  const files = ['connection', 'example', 'launch', 'package', 'readme', 'set', 'websocket', 'window']
    .map(name => fileURLToPath(new URL(`../client/${name}.test.js`, import.meta.url)))
  const {status, stdout, stderr} = spawnSync(program, ['--test', ...files], {encoding: 'utf8', timeout: 300_000,
    env: {...process.env, NODE_TEST_CONTEXT: undefined}})
  assert.equal(status, 0, stdout + stderr)
  assert.match(stdout, /^# fail 0$/m)
})
