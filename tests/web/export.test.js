// SPDX-License-Identifier: MIT
// Commands of the timeline, exported as a transcript, as a test and as client code, each of which the test then runs.
import assert from 'node:assert/strict'
import {execFile} from 'node:child_process'
import {cp, mkdir, mkdtemp, readFile, rm, writeFile} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {afterEach, beforeEach, test} from 'node:test'
import {fileURLToPath} from 'node:url'
import {promisify} from 'node:util'
import {connect} from '../../virtualtv/console/client/client.js'
import {program, serve} from '../client/support/server.js'
import {onSite} from '../site/support/bridge.js'
import {Console, useBrowser} from './support/console.js'

const run = promisify(execFile)
const client = fileURLToPath(new URL('../../virtualtv/console/client', import.meta.url))
let shown
let folder
useBrowser()
beforeEach(async () => folder = await mkdtemp(join(tmpdir(), 'emp-window-export-')))
afterEach(async () => {
  await shown?.close()
  await rm(folder, {recursive: true})
})

/** Uses two apps, knobs, faults, keys, and texts of all kinds. */
async function play() {
  const [guide, zapper] = [await shown.connect({appId: 'com.example.guide'}), await shown.connect()]
  await shown.tv.set('service.#2.name', 'A "quoted" \\ <b>\u0007')
  await guide.window.FindChannel(0, 1)
  await guide.window.SetWindow(1)
  await zapper.window.SetChannel(2, 0)
  await zapper.window.GetCurrentChannel_Name()
  await shown.tv.set('main.source', 13)
  await shown.tv.set('input.13.plugged', 'off')
  await shown.tv.setSetting('some/key', "it's")
  await zapper.window.GetSource(0)
  await shown.tv.fault('IServiceNavigation::GetTvMode', {nth: 2, result: 0})
  await guide.window.GetTVMode()
  await guide.window.GetTVMode()
  await zapper.window.SetScreenRect(640, 20, 300, 169)
  await guide.window.GetChannel_Name(1)
  await zapper.Execute('NoSuch command', "a 'b'", '')
  await zapper.executeWithParamList('SetScreenCropRect', [0, 0, 960, 540, 0, 0, 480, 270])
  await Promise.all([guide.close(), zapper.close()])
}

/** Exports what is shown, or commands by number, and saves the files. @return their names */
async function exported(kind, [from, to] = []) {
  const {page} = shown
  await shown.caughtUp()
  await page.getByRole('button', {name: 'Export…'}).click()
  const dialog = page.getByRole('dialog', {name: 'Export commands'})
  await dialog.getByRole('radio', {name: kind}).check()
  if (from) {
    await dialog.getByRole('radio', {name: 'by number'}).check()
    await dialog.getByLabel('from').fill(String(from))
    await dialog.getByLabel('to', {exact: true}).fill(String(to))
  }
  const saved = downloads(kind === 'Client code' ? 1 : 2)
  await dialog.getByRole('button', {name: 'Export'}).click()
  await dialog.waitFor({state: 'hidden'})
  const files = await saved
  for (const download of files) await download.saveAs(join(folder, download.suggestedFilename()))
  return files.map(download => download.suggestedFilename())
}

/** The next `count` files that the page saves. A snapshot comes after the file that it belongs to. */
async function downloads(count) {
  const files = []
  await new Promise(resolve => {
    const take = download => {
      if (files.push(download) === count) resolve(shown.page.off('download', take))
    }
    shown.page.on('download', take)
  })
  const isSnapshot = download => download.suggestedFilename().endsWith('.json')
  return files.sort((one, other) => isSnapshot(one) - isSnapshot(other))
}

/** Lets modules of the folder import the client as a package. */
async function install() {
  await cp(client, join(folder, 'node_modules/emp-window'), {recursive: true})
}

test('a transcript of all that was done passes emp-window check', async () => {
  shown = await Console.open()
  await play()
  const [name, snapshot] = await exported('Transcript')
  const text = await readFile(join(folder, name), 'utf8')
  assert.ok(text.startsWith(`> .recorded\n> .restore ${snapshot}\n`), text)
  for (const part of ['> GetTVMode\nint -1\n', '> .app com.example.guide', '> .set main.source 13', '>+ SetScreenCropRect', 'refused']) assert.ok(text.includes(part), `${part} in ${text}`)
  await check(name)
})

test('a range starts with what it stands on, from the set as it was then', async () => {
  shown = await Console.open()
  await play()
  const {page} = shown
  await page.getByLabel('Command', {exact: true}).first().selectOption('GetChannel_Name')
  await page.getByText(/^1 of/).waitFor()
  const [name] = await exported('Transcript')
  const text = await readFile(join(folder, name), 'utf8')
  assert.ok(text.includes('> FindChannel 0 1\n') && text.includes('> GetChannel_Name 1\nunicode "A \\"quoted'), text)
  assert.ok(!text.includes('> GetSource 0'), 'what was filtered out and changed nothing')
  await check(name)
})

test('entries that are chosen in the list are exported alone, as any kind', async () => {
  shown = await Console.open()
  for (let major = 1; major <= 5; ++major) await shown.tv.window.SetChannel(major, -1)
  const line = major => shown.page.getByRole('option').filter({hasText: `SetChannel ${major} -1`})
  await line(2).click()
  await line(4).click({modifiers: ['Shift']})
  for (const [kind, verify] of [['Transcript', check], ['Playwright test', runTest], ['Client code', () => {}]]) {
    const [name] = await exported(kind)
    const text = await readFile(join(folder, name), 'utf8')
    assert.deepEqual(Array.from(text.matchAll(/SetChannel\W+(\d)/g), ([, major]) => major), ['2', '3', '4'], text)
    assert.ok(text.includes('Commands 2 to 4 of'), text)
    await verify(name)
  }
})

/** Runs an exported transcript. @return its text */
async function check(name) {
  const text = await readFile(join(folder, name), 'utf8')
  await run(program, ['check', join(folder, name)]).catch(error => assert.fail(`${error.stdout}\n${text}`))
  return text
}

/** Runs an exported test with a stand-in for Playwright's runner, which gives it Node's `test` and an
 *  `expect(...).toBe`. */
async function runTest(name) {
  await install()
  await mkdir(join(folder, 'node_modules/@playwright/test'), {recursive: true})
  await writeFile(join(folder, 'node_modules/@playwright/test/package.json'), '{"type": "module", "exports": "./index.js"}')
  await writeFile(join(folder, 'node_modules/@playwright/test/index.js'), `import assert from 'node:assert'
    export {test} from 'node:test'
    export const expect = value => ({toBe: wanted => assert.strictEqual(value, wanted)})`)
  const {NODE_TEST_CONTEXT, ...environment} = process.env
  const {stdout} = await run(process.execPath, ['--test', join(folder, name)], {env: {...environment, EMP_WINDOW: program}})
    .catch(async error => assert.fail(`${error.stdout}\n${await readFile(join(folder, name), 'utf8')}`))
  assert.match(stdout, /^# pass 1$/m)
}

test('engines opened anew, faults that have counted and knobs that are not persisted are part of what a range stands on', async () => {
  shown = await Console.open()
  const {tv} = shown
  await tv.window.GetTVMode()
  await tv.set('main.resolution', 2)
  assert.equal(await tv.window.GetResolution(), 6)  // command 2
  await tv.window.SetWindow(1)
  await tv.window.FindChannel(0, 1)
  await tv.run('.reopen')
  assert.equal(await tv.window.GetScreenRect(), 'x:0,y:0,w:960,h:540')  // 5: in the main window again
  assert.equal(await tv.window.GetChannel_Name(1), -1)
  await tv.fault('IServiceNavigation::GetTvMode', {nth: 2, times: 2, result: 0})
  for (const answer of [1, -1, -1, 1]) assert.equal(await tv.window.GetTVMode(), answer)  // 7 to 10
  const {id} = await tv.call('tv.fault', {operation: 'TVServiceAPI::CreateServiceNavigation', times: 'always', result: null})
  await tv.run('.reopen')
  assert.equal(await tv.window.SetChannel(2, 0), 0)
  await tv.clearFaults(id)
  await tv.run('.reopen')
  assert.equal(await tv.window.SetChannel(2, 0), 1)  // 12
  for (const range of [[2, 2], [5, 6], [9, 10], [12, 12], [1, 12]]) await check((await exported('Transcript', range))[0])
  await runTest((await exported('Playwright test', [1, 12]))[0])
})

test('channels that were moved and removed are so in a transcript and a test', async () => {
  shown = await Console.open()
  const change = (service, more) => shown.tv.call('tv.editService', {service, ...more})
  await shown.tv.window.FindChannel(0, 1)
  await change('#3', {change: 'move', value: 5})
  await change('#1', {change: 'remove'})
  await shown.tv.window.FindChannel(0, 1)
  await shown.tv.window.GetChannel_Name(0)
  await shown.tv.window.GetCurrentChannel_Name()
  await shown.pane('Timeline').getByText('service #3 move 5, 81 -> 81: 0 added').waitFor()
  const [name] = await exported('Transcript')
  const text = await readFile(join(folder, name), 'utf8')
  assert.ok(text.includes('> .service #3 move 5\n> .service #1 remove\n'), text)
  await check(name)
  await runTest((await exported('Playwright test'))[0])
})

test('a Playwright test passes on a TV of its own', async () => {
  shown = await Console.open()
  await play()
  await runTest((await exported('Playwright test'))[0])
})

test('client code does the same on the TV that there is', async () => {
  shown = await Console.open()
  const fresh = await shown.tv.snapshot()
  await shown.tv.window.SetChannel(3, 0)
  await shown.tv.window.GetCurrentChannel_Name()
  const [name] = await exported('Client code')
  const server = onSite ? await serve() : shown.server  // programs can't reach into a tab
  const tv = await connect(server.address)
  await tv.restore(fresh)
  assert.equal(await tv.window.GetCurrentChannel_Name(), 'Lighthouse One')
  await install()
  const {stdout} = await run(process.execPath, [join(folder, name), ...onSite ? [server.address] : []])
  assert.equal(stdout, '1\nLighthouse News\n')
  assert.equal(await tv.window.GetCurrentChannel_Name(), 'Lighthouse News')
  await tv.close()
  const text = await readFile(join(folder, name), 'utf8')
  const [of, address] = onSite ? [`the TV in a tab of ${shown.server.address}/`, 'http://127.0.0.1:8090'] : [server.address, server.address]
  assert.ok(text.includes(`// Commands 1 to 2 of ${of}\n`) && text.includes(`?? "${address}"`), text)
})
