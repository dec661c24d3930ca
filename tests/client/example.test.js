// SPDX-License-Identifier: MIT
// The example project in examples/guide, run as its CI does.
import assert from 'node:assert/strict'
import {spawnSync} from 'node:child_process'
import {cp, mkdir, mkdtemp, readFile, rm, symlink, writeFile} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {dirname, join} from 'node:path'
import {after, before, test} from 'node:test'
import {fileURLToPath} from 'node:url'
import {program} from './support/server.js'

const pathOf = path => fileURLToPath(new URL(path, import.meta.url))

let directory
before(async () => {
  directory = await mkdtemp(join(tmpdir(), 'example-test-'))
  await cp(pathOf('../../examples/guide'), directory, {recursive: true})
  await mkdir(join(directory, 'node_modules'))
  await symlink(pathOf('../../virtualtv/console/client'), join(directory, 'node_modules/emp-window'))
  await symlink(join(process.env.EMP_WINDOW_CLIENT_PACKAGES, 'node_modules/playwright-core'), join(directory, 'node_modules/playwright-core'))
})
after(() => rm(directory, {recursive: true}))

/** Runs the project's CI with this Node, as a program of its own, not as a part of this test. */
function ci() {
  const {NODE_TEST_CONTEXT, ...environment} = process.env
  const path = `${dirname(process.execPath)}:${environment.PATH}`
  const {status, stdout, stderr} = spawnSync('./ci.sh', {cwd: directory, encoding: 'utf8', env: {...environment, EMP_WINDOW: program, PATH: path}})
  return {status, said: stdout + stderr}
}

async function change(file, from, to) {
  const text = await readFile(join(directory, file), 'utf8')
  assert.ok(text.includes(from))
  await writeFile(join(directory, file), text.replace(from, to))
}

test('what docs/testing.md shows of it stands in it', async () => {
  const page = await readFile(pathOf('../../docs/testing.md'), 'utf8')
  const blocks = [...page.matchAll(/^```(js|sh)\n(.*?)^```$/gms)]
  assert.equal(blocks.length, 3)
  const files = await Promise.all(['tests/guide.test.js', 'tests/page.test.js', 'ci.sh'].map(name => readFile(join(directory, name), 'utf8')))
  const lines = new Set(files.join('').split('\n').map(line => line.trim()))
  for (const [, , code] of blocks) {
    // Lines that import guide.js are not compared: the file may import more names than the page shows.
    for (const line of code.split('\n').map(one => one.trim()).filter(one => !one.includes("'../guide.js'"))) assert.ok(lines.has(line), line)
  }
})

test('its transcripts and tests pass, and a report is there', async () => {
  const {status, said} = ci()
  assert.equal(status, 0, said)
  assert.match(said, /^transcripts: 2 passed, 0 failed$/m)
  assert.match(said, /^(#|ℹ) pass 7$/m)
  assert.match(await readFile(join(directory, 'reports/transcripts.xml'), 'utf8'), /<testsuites[^>]* failures="0"/)
})

test('an app that does not look at a failure fails it', async () => {
  await change('guide.js', "typeof name === 'string' ? name : 'No channel'", 'name')
  const {status, said} = ci()
  assert.notEqual(status, 0)
  assert.match(said, /^(#|ℹ) fail 1$/m)
})

test('a transcript that is not true fails it', async () => {
  await change('transcripts/on-screen.txt', 'int 31', 'int 30')
  const {status, said} = ci()
  assert.notEqual(status, 0)
  assert.match(said, /^transcripts: 1 passed, 1 failed$/m)
})
