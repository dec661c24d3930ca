// SPDX-License-Identifier: MIT
// main.js NATIVE [PAGE]: measures a TV in memory and prints a table. NATIVE is bench_posted, the reference; PAGE is a
// file to write the table to. The exit status is 1 if a target is missed. EMP_WINDOW_PACKAGE and
// EMP_WINDOW_CLIENT_PACKAGES are those of run.sh.
import {execFileSync} from 'node:child_process'
import {readFile, writeFile} from 'node:fs/promises'
import {cpus, loadavg} from 'node:os'
import {join} from 'node:path'
import {gzipSync} from 'node:zlib'
import {startBrowser} from '../../client/support/browser.js'
import {PackageSite, directory} from '../support/package.js'
import {pageOf} from './page.js'
import {inNode, inPage, postTimes} from './posts.js'
import {startInNode, startInPage, startOfScript} from './starts.js'
import {missed, tableOf} from './table.js'

const mostKilobytes = 700
const mostInNode = 60  // ms
const mostInChromium = 150
const mostOfCall = 8  // times the native time
const mostOfList = 4
const mostGrowth = 1.2

async function sizeRow(file) {
  const bytes = gzipSync(await readFile(join(directory, file)), {level: 9}).length
  return {what: `${file}, compressed`, is: bytes / 1024, wanted: mostKilobytes, unit: 'KB', detail: `${bytes} bytes by gzip -9`}
}

function startRow(what, {time, median, processor}, wanted) {
  const ofProcessor = processor === undefined ? '' : `, of the processor ${processor.toFixed(0)} ms`
  return {what, is: time, wanted, unit: 'ms', detail: `median ${median.toFixed(0)} ms${ofProcessor}`}
}

const microseconds = nanoseconds => `${Number((nanoseconds / 1000).toPrecision(3))} us`

function heldRow(what, {module, native}, wanted) {
  return {what, is: module / native, wanted, unit: '', detail: `${microseconds(module)}, natively ${microseconds(native)}`}
}

function postRows({call, list}, where) {
  return [
    heldRow(`GetTVMode, which makes one call to the set, in ${where} / natively`, call, mostOfCall),
    heldRow(`GetFullChannelList of 10,000 services in ${where} / natively`, list, mostOfList),
  ]
}

function growthRow() {
  const script = `import {useMany} from '${new URL('../support/many.js', import.meta.url)}'
    console.log(JSON.stringify([await useMany(200), await useMany(800)]))`
  const [before, after] = JSON.parse(execFileSync(process.execPath, ['--input-type=module', '-e', script], {encoding: 'utf8'}))
  const megabytes = bytes => `${(bytes / 2 ** 20).toFixed(0)} MB`
  return {
    what: 'a process that has made and closed 1,000 TVs / 200', is: after / before, wanted: mostGrowth, unit: '',
    detail: `${megabytes(after)}, ${megabytes(before)}`,
  }
}

async function rowsOf(browser, site, native) {
  return [
    await sizeRow('emp-window.wasm'),
    await sizeRow('tv.js'),
    startRow('`createTv` to the first reply in Node', await startInNode(), mostInNode),
    startRow('`createTv` to the first reply in Chromium', await startInPage(browser, site), mostInChromium),
    startRow('the line of tv.js to the first reply in Chromium', await startOfScript(browser, site), mostInChromium),
    ...postRows(await postTimes(await inNode(), native), 'Node'),
    ...postRows(await postTimes(await inPage(browser, site), native), 'Chromium'),
    growthRow(),
  ]
}

const [native, page] = process.argv.slice(2)
const load = loadavg()[0].toFixed(1)
const site = await new PackageSite().listen()
const browser = await startBrowser()
try {
  const rows = await rowsOf(browser, site, native)
  console.log(tableOf(rows).join('\n'))
  const machine = `${cpus()[0].model}, ${cpus().length} cores with a load of ${load} before, Node ${process.versions.node}, ` +
    `Chromium ${browser.version()}`
  if (page) await writeFile(page, pageOf(rows, machine))
  process.exitCode = missed(rows).length > 0 ? 1 : 0
} finally {
  await browser.close()
  site.close()
}
