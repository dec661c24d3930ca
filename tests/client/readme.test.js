// SPDX-License-Identifier: MIT
// Runs the examples of the client's README that use a server, unchanged except for its address. tests/tab runs the
// others.
import assert from 'node:assert/strict'
import {cp, mkdir, mkdtemp, readFile, rm, symlink, writeFile} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {after, before, test} from 'node:test'
import {fileURLToPath} from 'node:url'
import {Page} from './support/page.js'
import {blocks, example as exampleOf, runIn, scriptsOf} from './support/readme.js'
import {endServers, program, serve} from './support/server.js'

const client = fileURLToPath(new URL('../../virtualtv/console/client', import.meta.url))
const transcripts = fileURLToPath(new URL('../transcripts', import.meta.url))
const address = 'http://127.0.0.1:8090'

let directory
let server
before(async () => {
  directory = await mkdtemp(join(tmpdir(), 'readme-test-'))
  await mkdir(join(directory, 'node_modules'))
  await symlink(client, join(directory, 'node_modules', 'emp-window'))
  await writeFile(join(directory, 'package.json'), '{"type": "module"}')
  server = await serve()
})
after(async () => {
  endServers()
  await rm(directory, {recursive: true})
})

const example = part => exampleOf(part).replaceAll(address, server.address)
const run = (file, ...words) => runIn(directory, file, words, {EMP_WINDOW: program})

test('every example is run, here or in tests/tab', () => {
  assert.equal(blocks.length, 10)
})

test('the app shows the channel and the next one', async () => {
  const {source} = scriptsOf(example('window.js?name='))
  const {app} = scriptsOf(example('<!doctype html>'))
  const page = new Page()
  await page.load(source)
  page.run(`{${app}}`)
  assert.equal(page.element('name').textContent, 'Lighthouse One')
  page.element('next').onclick()
  assert.equal(page.element('name').textContent, 'Lighthouse Two')
  page.close()
})

test('the app on the front page is this one', async () => {
  const front = await readFile(new URL('../../README.md', import.meta.url), 'utf8')
  assert.equal(/^```html\n(.*?)^```$/ms.exec(front)[1], exampleOf('<!doctype html>'))
})

test('the module puts the object in place', async () => {
  await writeFile(join(directory, 'install.js'), `${example('installWindow(globalThis, {address')}console.log(tvWindow.GetTVMode())\n`)
  assert.equal(run('install.js'), '1\n')
})

test('the test in Node passes', async () => {
  await writeFile(join(directory, 'app.test.js'), example('const tv = await launch()\n  await tv.fault'))
  assert.match(run('app.test.js', '--test'), /# pass 1\n/)
})

test('the fixture for Playwright gives each test a TV, and ends it', async () => {
  // Replaces the test runner: records the fixtures, and runs them like the test runner.
  const runner = join(directory, 'node_modules', '@playwright', 'test')
  await mkdir(runner, {recursive: true})
  await writeFile(join(runner, 'package.json'), '{"type": "module", "exports": "./index.js"}')
  await writeFile(join(runner, 'index.js'), 'export const expect = {}\nexport const test = {extend: fixtures => ({fixtures})}\n')
  await writeFile(join(directory, 'fixture.js'), example('base.extend'))
  await writeFile(join(directory, 'use.js'), `
    import {test} from './fixture.js'
    const scripts = []
    const page = {addInitScript: async ({content}) => scripts.push(content)}
    let pid
    await test.fixtures.tv({page}, async tv => {
      pid = tv.pid
      await tv.set('main.source', 13)
      const {status, headers} = await fetch(tv.address + '/client.js', {headers: {Origin: 'http://localhost:5173'}})
      console.log(await tv.window.GetSource(0), scripts[0] === \`globalThis.tvAddress = '\${tv.address}'\`, status,
        headers.get('access-control-allow-origin'))
    })
    try {
      process.kill(pid, 0)
    } catch (error) {
      console.log(error.code)
    }`)
  assert.equal(run('use.js'), '31 true 200 http://localhost:5173\nESRCH\n')
})

test('the client connects, listens, tunes and prints', async () => {
  await writeFile(join(directory, 'connect.js'), example("tv.on('command'"))
  const printed = run('connect.js')
  assert.match(printed, /^connected\nSetChannel\n/)
  assert.match(printed, /'main\.source = 0'/)
})

test('the transcript passes', async () => {
  await cp(join(transcripts, 'zapping.txt'), join(directory, 'zapping.txt'))
  await writeFile(join(directory, 'replay.js'), example('runTranscript'))
  assert.equal(run('replay.js'), 'passed\n')
})
