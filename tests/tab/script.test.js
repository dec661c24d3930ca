// SPDX-License-Identifier: MIT
// The script tv.js: one line gives an app its TV before the app's first line, even from a file.
import assert from 'node:assert/strict'
import {copyFile, mkdtemp, rm, writeFile} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {after, before, test} from 'node:test'
import {page, useBrowser} from '../client/support/browser.js'
import {PackageSite, directory} from './support/package.js'

let folder
let site
useBrowser()
before(async () => {
  folder = await mkdtemp(join(tmpdir(), 'tab-script-'))
  await copyFile(join(directory, 'tv.js'), join(folder, 'tv.js'))
  site = await new PackageSite().listen()
})
after(async () => {
  site.close()
  await rm(folder, {recursive: true})
})

/** Writes a page next to the script. @return its address */
async function file(name, html) {
  await writeFile(join(folder, name), html)
  return `file://${folder}/${name}`
}

const app = line => `<!doctype html><title>app</title>${line}
  <script>document.title = tvWindow.Execute('GetCurrentChannel_Name')</script>`

/** Collects the errors of a page that no script catches. */
function errorsOf(one) {
  const errors = []
  one.on('pageerror', error => errors.push(`${error.name}: ${error.message}`))
  return errors
}

test('from a file, the first line of an app calls the set', async () => {
  await page.goto(await file('app.html', app('<script src="tv.js" data-name="tvWindow"></script>')))
  assert.equal(await page.title(), 'Lighthouse One')
  assert.deepEqual(await page.evaluate(async () => {
    const {tv} = tvWindow
    await tv.fault('IServiceNavigation::GetTvMode', {result: 0, times: 1})
    return [tvWindow.GetTVMode(), tvWindow.GetTVMode(), (await tv.state()).windows.main.service.name, tvWindow.isVirtual]
  }), [-1, 1, 'Lighthouse One', true])
})

test('the query says the same as the attributes', async () => {
  site.pages.set('/app', app('<script src="/package/tv.js?name=tvWindow&appId=com.example.guide&wait=false"></script>'))
  await page.goto(`${site.address}/app`)
  assert.equal(await page.title(), 'Lighthouse One')
  const [time, engine] = await page.evaluate(async () => {
    const opened = []
    await tvWindow.tv.on('engine', event => opened.push(event.appId), {after: 0}).ready
    await tvWindow.tv.set('latency.IServiceNavigation::GetTvMode', 60_000)
    const start = performance.now()
    tvWindow.GetTVMode()
    await tvWindow.tv.state()
    return [performance.now() - start, opened]
  })
  assert.ok(time < 30_000)
  assert.ok(engine.includes('com.example.guide'), String(engine))
})

test('frames have sets of their own, or engines of their own on the set of their page', async () => {
  site.pages.set('/frame', app('<script src="/package/tv.js" data-name="tvWindow"></script>'))
  site.pages.set('/plain', '<!doctype html><title>plain</title>')
  site.pages.set('/outer', app('<script src="/package/tv.js" data-name="tvWindow"></script>') +
    '<iframe id="own" src="/frame"></iframe><iframe id="shared" src="/plain"></iframe>')
  await page.goto(`${site.address}/outer`)
  assert.deepEqual(await page.evaluate(async () => {
    const {installWindow} = await import('/package/client.js')
    const [own, shared] = ['own', 'shared'].map(id => document.getElementById(id).contentWindow)
    installWindow(shared, {tv: tvWindow.tv, name: 'tvWindow'})
    tvWindow.FindChannel(0, 1)
    tvWindow.SetChannel(3, 0)
    return [shared.tvWindow, own.tvWindow].flatMap(one => [one.GetCurrentChannel_Name(), one.GetChannel_Size()])
  }), ['Lighthouse News', 0, 'Lighthouse One', 0])
})

test('without a name the script offers its functions, which start from a list and a snapshot at once', async () => {
  await page.goto(await file('plain.html', '<!doctype html><script src="tv.js"></script>'))
  const list = 'One;Test:11836:HC34M2O0S0:S19.2E:27500:101:102:104:0:28106:1:1101:0\n'
  assert.deepEqual(await page.evaluate(async given => {
    const {createTv, installWindow, EmpTvError} = empWindow
    const first = createTv({list: given})
    const object = installWindow(globalThis, {tv: first, name: 'tvWindow'})
    const names = [object.SetChannel(1, 0), object.GetCurrentChannel_Name(), object === tvWindow]
    const second = createTv({snapshot: await first.snapshot()})
    try {
      createTv({list: 'nothing that is known'})
    } catch (error) {
      names.push(error instanceof EmpTvError && error.what)
    }
    try {
      createTv({persist: 'key'})
    } catch (error) {
      names.push(/keeps no TV/.test(error.message))
    }
    return [...names, (await second.services()).total]
  }, list), [1, 'One', true, 'list', true, 1])
})

test('a second line of the same name changes nothing', async () => {
  await page.goto(await file('twice.html', `<!doctype html><script src="tv.js" data-name="tvWindow"></script>
    <script>globalThis.first = tvWindow</script><script src="tv.js" data-name="tvWindow"></script>`))
  assert.equal(await page.evaluate(() => tvWindow === first && tvWindow.GetTVMode()), 1)
})

test('where a policy forbids to compile, the error says what the page wants', async () => {
  const errors = errorsOf(page)
  site.pages.set('/strict', {headers: {'Content-Security-Policy': "script-src 'self'"},
    body: '<!doctype html><script src="/package/tv.js" data-name="tvWindow"></script>'})
  await page.goto(`${site.address}/strict`)
  assert.match(errors.join(), /^EmpTvError: tv.js: the module can't be compiled: .*wants 'wasm-unsafe-eval' in script-src$/)
})

test('where a browser refuses to compile that much at once, the error says what to do', async () => {
  const errors = errorsOf(page)
  // Imitates the limit of some browsers.
  await page.addInitScript(() => {
    WebAssembly.Module = class {
      constructor(bytes) {
        if (bytes.length > 4096) throw new RangeError('WebAssembly.Compile is disallowed on the main thread')
      }
    }
  })
  await page.goto(await file('limit.html', '<!doctype html><script src="tv.js" data-name="tvWindow"></script>'))
  assert.match(errors.join(), /EmpTvError: tv.js: .*disallowed on the main thread; .*take createTv of the module 'emp-window'/)
})
