// SPDX-License-Identifier: MIT
// The set in memory does exactly what the program does, down to each call and log message: transcripts, the cases of
// all commands, lists, recordings, snapshots, and the scripts of the simulation, which the program also compares with
// the model. Runs in Node and in a browser. EMP_WINDOW names the program, EMP_WINDOW_SIMULATION that of the simulation,
// and EMP_WINDOW_LISTS, if set, a folder of lists.
import assert from 'node:assert/strict'
import {execFileSync} from 'node:child_process'
import {mkdtempSync, rmSync} from 'node:fs'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {after, before, test} from 'node:test'
import {startBrowser} from '../client/support/browser.js'
import {answersOf, differenceIn} from './support/answers.js'
import {PackageSite, createTv, urlOf} from './support/package.js'
import {cases, checks, lists, recordings, simulation, snapshots, transcripts} from './support/streams.js'

const commands = 100_000  // commands of the simulation
const {EMP_WINDOW: program, EMP_WINDOW_SIMULATION: simulator, EMP_WINDOW_LISTS: listFolder} = process.env
if (!program || !simulator) throw new Error('EMP_WINDOW and EMP_WINDOW_SIMULATION are to name the programs')
const {launch} = await import(urlOf('launch.js'))

let browser
let page
let site
before(async () => {
  [browser, site] = await Promise.all([startBrowser(), new PackageSite().listen()])
  site.pages.set('/', `<!doctype html><script type="module">
    import {createTv} from '/package/client.js'
    import {answersOf} from '/tab/answers.js'
    globalThis.answer = async calls => {
      const tv = await createTv()
      const answers = await answersOf(tv, calls)
      await tv.close()
      return answers
    }</script>`)
  page = await browser.page()
  await page.goto(site.address)
  await page.waitForFunction(() => globalThis.answer)
})
after(async () => {
  await browser?.close()
  site?.close()
})

async function answersOn(make, calls) {
  const tv = await make()
  const answers = await answersOf(tv, calls)
  await tv.close()
  return answers
}

const seconds = {program: 0, node: 0, browser: 0}

async function timed(where, answering) {
  const start = performance.now()
  const answers = await answering
  seconds[where] += (performance.now() - start) / 1000
  return answers
}

/** Makes the same calls on the program, in Node and in the browser, and compares. @return the program's answers */
async function compare({name, calls}) {
  const [wanted, here, there] = await Promise.all([timed('program', answersOn(launch, calls)),
    timed('node', answersOn(createTv, calls)), timed('browser', page.evaluate(given => globalThis.answer(given), calls))])
  assert.equal(differenceIn(calls, wanted, here), undefined, `${name}, in Node`)
  assert.equal(differenceIn(calls, wanted, there), undefined, `${name}, in a browser`)
  return wanted
}

const formats = () => /--format TEXT:\{([^}]*)\}/.exec(execFileSync(program, ['import', '--help']).toString())[1].split(',')

for (const [what, streams] of [['transcript', transcripts()], ['cases', cases()], ['list', lists(formats(), listFolder)],
  ['recording', recordings()], ['snapshot', snapshots()], ['check of', checks()]]) {
  test(`there are streams: ${what}`, () => assert.ok(streams.length > 0))
  for (const stream of streams) test(`${what} ${stream.name} gives the same`, () => compare(stream))
}

test('the simulation gives the same', async context => {
  const folder = mkdtempSync(join(tmpdir(), 'tab-simulation-'))
  try {
    execFileSync(simulator, ['--commands', String(commands), '--scripts', folder, '--transcript', join(folder, 'failed')])
    Object.assign(seconds, {program: 0, node: 0, browser: 0})
    let count = 0
    let hits = 0
    for (const stream of simulation(folder)) {
      const answers = await compare(stream)
      count += stream.calls.filter(([method, {line}]) => method === 'tv.run' && !line.startsWith('.')).length
      hits += answers.join('').split('[fault').length - 1
    }
    assert.ok(count >= commands, `${count} commands`)
    assert.ok(hits >= commands / 100, `${hits} calls that failed`)
    const times = Object.entries(seconds).map(([where, time]) => `${where} ${time.toFixed(0)} s`)
    context.diagnostic(`${count} commands, ${hits} calls that failed: ${times.join(', ')}`)
  } finally {
    rmSync(folder, {recursive: true})
  }
})

test('a set that does something else is found out', async () => {
  const calls = [['tv.run', {line: '.trace on'}], ['tv.run', {line: 'GetTVMode'}], ['tv.state', {}]]
  const wanted = await answersOn(launch, calls)
  assert.equal(differenceIn(calls, wanted, wanted), undefined)
  const faulty = async () => {
    const tv = await createTv()
    await tv.fault('IServiceNavigation::GetTvMode', {result: 0})
    return tv
  }
  assert.match(differenceIn(calls, wanted, await answersOn(faulty, calls)), /^call 1, .*"GetTVMode".* is answered\n.*int -1.*\nnot\n.*int 1/)
  const altered = wanted.map((line, at) => at === 2 ? line.replace('"revision":', '"revision":1') : line)
  assert.match(differenceIn(calls, wanted, altered), /^call 2, /)
})
