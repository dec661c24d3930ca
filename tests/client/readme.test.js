// The examples of the client's README, run as they stand there but for the server's address.
import assert from 'node:assert/strict'
import {spawnSync} from 'node:child_process'
import {cp, mkdir, mkdtemp, readFile, rm, symlink, writeFile} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {after, before, test} from 'node:test'
import {fileURLToPath} from 'node:url'
import {Page} from './support/page.js'
import {endServers, program, serve} from './support/server.js'

const client = fileURLToPath(new URL('../../virtualtv/console/client', import.meta.url))
const transcripts = fileURLToPath(new URL('../transcripts', import.meta.url))
const address = 'http://127.0.0.1:8090'

let blocks
let directory
let server
before(async () => {
  const text = await readFile(join(client, 'README.md'), 'utf8')
  blocks = [...text.matchAll(/^```(js|html)\n(.*?)^```$/gms)].map(([, language, code]) => ({language, code}))
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

/** The example that has a text in it. */
function example(text) {
  const found = blocks.filter(({code}) => code.includes(text))
  assert.equal(found.length, 1, `examples with '${text}'`)
  return found[0].code.replaceAll(address, server.address)
}

/** Runs a file of the scratch folder in Node. @return what it printed */
function run(file, ...words) {
  const {stdout, stderr, status} = spawnSync(process.execPath, [...words, file],
    {cwd: directory, encoding: 'utf8', timeout: 30_000, env: {...process.env, EMP_WINDOW: program, NODE_TEST_CONTEXT: undefined}})
  assert.equal(status, 0, `${file}: ${stdout}${stderr}`)
  return stdout
}

test('every example is run here', () => {
  assert.equal(blocks.length, 6)
})

test('the app shows the channel and the next one', async () => {
  const html = example('<!doctype html>')
  const [, source] = /<script src="([^"]+)">/.exec(html)
  const [, script] = /<script type="module">(.*)<\/script>/s.exec(html)
  const page = new Page()
  await page.load(source)
  page.run(`{${script}}`)
  assert.equal(page.element('name').textContent, 'Lighthouse One')
  page.element('next').onclick()
  assert.equal(page.element('name').textContent, 'Lighthouse Two')
  page.close()
})

test('the module puts the object in place', async () => {
  await writeFile(join(directory, 'install.js'), `${example('installWindow(globalThis')}console.log(tvWindow.GetTVMode())\n`)
  assert.equal(run('install.js'), '1\n')
})

test('the test in Node passes', async () => {
  await writeFile(join(directory, 'app.test.js'), example('the app survives'))
  assert.match(run('app.test.js', '--test'), /# pass 1\n/)
})

test('the fixture for Playwright gives each test a TV, and ends it', async () => {
  // In place of the test runner: keeps the fixtures, and runs them as that would.
  const runner = join(directory, 'node_modules', '@playwright', 'test')
  await mkdir(runner, {recursive: true})
  await writeFile(join(runner, 'package.json'), '{"type": "module", "exports": "./index.js"}')
  await writeFile(join(runner, 'index.js'), 'export const expect = {}\nexport const test = {extend: fixtures => ({fixtures})}\n')
  await writeFile(join(directory, 'fixture.js'), example('@playwright/test'))
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
