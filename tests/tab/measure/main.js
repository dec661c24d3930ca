// What a TV in memory costs to load and to start, as a table: the least of several tries, each in a fresh process or page. The
// status is 1 if a target is missed. EMP_WINDOW_PACKAGE and EMP_WINDOW_CLIENT_PACKAGES are those of run.sh.
import {execFileSync} from 'node:child_process'
import {readFile} from 'node:fs/promises'
import {join} from 'node:path'
import {gzipSync} from 'node:zlib'
import {startBrowser} from '../../client/support/browser.js'
import {PackageSite, directory, urlOf} from '../support/package.js'

const tries = 8

async function least(run) {
  const values = []
  for (let at = 0; at < tries; ++at) values.push(await run())
  return Math.min(...values)
}

/** Runs in Node and in pages: milliseconds from asking for a TV to its first reply. */
const body = `
  const start = performance.now()
  const tv = await createTv()
  await tv.window.GetTVMode()
  const time = performance.now() - start`

function inNode() {
  const script = `import {createTv} from '${urlOf('client.js')}'\n${body}\nconsole.log(time)\nawait tv.close()`
  return Number(execFileSync(process.execPath, ['--input-type=module', '-e', script], {encoding: 'utf8'}))
}

const site = await new PackageSite().listen()
const browser = await startBrowser()

/** A page of a browser that has been there before, as for a person who develops an app. */
async function inPage(html) {
  site.pages.set('/start', html)
  const page = await browser.page()
  await page.goto(`${site.address}/start`)
  const time = await page.waitForFunction(() => globalThis.time)
  const value = await time.jsonValue()
  await page.context().close()
  return value
}

const byModule = `<!doctype html><script type="module">import {createTv} from '/package/client.js'\n${body}\nglobalThis.time = time</script>`
const byScript = `<!doctype html><script>globalThis.start = performance.now()</script>
  <script src="/package/tv.js" data-name="tvWindow"></script>
  <script>tvWindow.GetTVMode(); globalThis.time = performance.now() - start</script>`

const kilobytes = async file => gzipSync(await readFile(join(directory, file)), {level: 9}).length / 1024

const rows = [
  ['emp-window.wasm, compressed', await kilobytes('emp-window.wasm'), 'KB', 700],
  ['tv.js, compressed', await kilobytes('tv.js'), 'KB', 700],
  ['createTv to the first reply in Node', await least(inNode), 'ms', 60],
  ['createTv to the first reply in Chromium', await least(() => inPage(byModule)), 'ms', 150],
  ['the line of tv.js to the first reply in Chromium', await least(() => inPage(byScript)), 'ms', 150],
]
await browser.close()
site.close()

console.log('| Figure | Is | Wanted |\n| --- | --- | --- |')
for (const [what, is, unit, wanted] of rows) console.log(`| ${what} | ${is.toFixed(0)} ${unit} | ${wanted} ${unit} |`)
process.exitCode = rows.some(([, is, , wanted]) => is > wanted) ? 1 : 0
