// SPDX-License-Identifier: MIT
// The site: where it can be served, what it needs, what it persists, and how it is updated.
import assert from 'node:assert/strict'
import {appendFileSync, rmSync} from 'node:fs'
import {join} from 'node:path'
import {test} from 'node:test'
import {pathToFileURL} from 'node:url'
import {until} from '../client/support/wait.js'
import {ask, base, copyOfSite, how, makeVersion, open, ready, serve, startZapper, untilKept, useVisits, where} from './support/visit.js'

useVisits()

test('it runs beneath any path of a plain server, isolated, with the set in a worker', async () => {
  const server = await serve()
  const page = await open()
  assert.equal(await page.evaluate(() => globalThis.crossOriginIsolated), true)
  assert.deepEqual(page.workers().map(worker => worker.url()), [`${server.origin}${base}set/worker.js`])
  await where(page).getByText('State: in this tab, stored in this browser').waitFor()
  await page.getByText('0 engines, 1 client').waitFor()
  assert.deepEqual(server.requests.filter(path => !path.startsWith(base)), [])
})

test('it works offline behind the first visit, with the apps that come with it', async () => {
  const server = await serve()
  const page = await open()
  server.close()
  await page.reload()
  await ready(page)
  const zapper = await startZapper(page)
  assert.equal(await zapper.evaluate(() => tvWindow.SetChannel(3, 0)), 1)
})

test('the set is kept over a reload, and reset by a reset', async () => {
  await serve()
  const page = await open()
  await ask(page, 'tv.set', {name: 'region', value: 2})
  await page.getByRole('tab', {name: 'Set', exact: true}).click()
  await page.waitForFunction(() => document.querySelector('input[aria-label="Region"]')?.value === '2')
  await untilKept(page, '"region":2')
  await page.reload()
  await ready(page)
  assert.equal((await ask(page, 'tv.state')).region, 2)
  await page.getByRole('button', {name: 'Reset', exact: true}).click()
  await page.getByRole('dialog').getByRole('button', {name: 'Reset'}).click()
  await page.getByText('Reset to the built-in set').waitFor()
  assert.notEqual((await ask(page, 'tv.state')).region, 2)
})

test('a second tab has a set of its own, and says so', async () => {
  await serve()
  const first = await open()
  const second = await open({beside: first})
  await where(second).getByText("not stored, another tab's is").waitFor()
  await (await how(second)).getByText('since another tab has the one that is').waitFor()
  await ask(second, 'tv.set', {name: 'region', value: 2})
  assert.notEqual((await ask(first, 'tv.state')).region, 2)
})

test('a new version comes when no other tab needs the old one', async () => {
  const site = copyOfSite()
  await serve({[base]: site})
  const first = await open()
  const second = await open({beside: first})
  makeVersion(site, 'page/act.js', text => `${text}\nglobalThis.isNew = true\n`)
  const renew = async page => {
    await page.evaluate(async () => {
      const registration = await navigator.serviceWorker.getRegistration()
      await registration.update()
      const worker = registration.installing ?? registration.waiting
      if (worker.state === 'installing') await new Promise(resolve => worker.addEventListener('statechange', resolve, {once: true}))
    })
    await page.reload()
    await ready(page)
    return page.evaluate(() => globalThis.isNew)
  }
  assert.equal(await renew(first), undefined)
  await second.close()
  await until(async () => {  // the browser may count a closed tab for a moment
    await first.reload()
    await ready(first)
    return first.evaluate(() => globalThis.isNew)
  }, 'the new version')
  assert.equal((await first.evaluate(() => caches.keys())).length, 1)
})

test('a site of which a file is missing or of another version is not taken for use offline', async () => {
  const site = copyOfSite()
  await serve({[base]: site})
  appendFileSync(join(site, 'transcript.js'), '// changed')
  const page = await open({mayComplain: true})
  assert.equal(await page.evaluate(() => globalThis.crossOriginIsolated), false)
  await page.getByRole('tab', {name: 'App', exact: true}).click()
  await page.getByText("since the site's service worker can't be installed").waitFor()
})

test('where the module is missing the page says so', async () => {
  const site = copyOfSite()
  rmSync(join(site, 'emp-window.wasm'))
  await serve({[base]: site})
  const page = await open({mayComplain: true, isReady: false})
  await page.getByRole('alert').getByText(/The TV of this tab is not running.*emp-window\.wasm.*404/).waitFor()
})

test('opened as a file, or without one of its modules, the page says what to do', async () => {
  const site = copyOfSite()
  await serve({[base]: site})
  const notStarted = page => page.getByText('The TV has not started')
  const file = await open({address: pathToFileURL(join(site, 'index.html')).href, mayComplain: true, isReady: false})
  await notStarted(file).waitFor()
  assert.ok((await notStarted(file).boundingBox()).y < 200, 'it can be seen')
  await file.getByText('python3 -m http.server').waitFor()
  const whole = await open()
  assert.ok(await notStarted(whole).isHidden())
  rmSync(join(site, 'page/act.js'))
  const page = await open({mayComplain: true, isReady: false})
  await notStarted(page).waitFor()
})

test('without https it runs on the page\'s own thread and says what follows', async () => {
  const server = await serve()
  const page = await open({address: `http://set.test:${server.port}${base}`})
  assert.equal(page.workers().length, 0)
  await where(page).getByText('not stored').waitFor()
  await (await how(page)).getByText("this page can't tell other tabs from itself: it wants https, localhost or a file").waitFor()
  const zapper = await startZapper(page)
  assert.equal(await zapper.evaluate(() => tvWindow.SetChannel(3, 0)), 1)
  await page.getByText('its address is neither of this machine (http://localhost) nor https').waitFor()
})

test('its policy lets nothing in from elsewhere and nothing from its own text', async () => {
  await serve()
  const page = await open({mayComplain: true})
  const refused = await page.evaluate(async () => {
    const directives = []
    document.addEventListener('securitypolicyviolation', ({effectiveDirective}) => directives.push(effectiveDirective))
    const add = (tag, properties) => document.body.append(Object.assign(document.createElement(tag), properties))
    add('script', {textContent: 'globalThis.isInjected = true'})
    add('img', {src: 'http://other.test/a.png'})
    add('iframe', {src: 'http://other.test/'})
    await fetch('http://other.test/').catch(() => {})
    await new Promise(resolve => setTimeout(() => {  // a test may evaluate code, the page may not
      try {
        globalThis.eval('1')
      } catch {
        directives.push('eval')
      }
      resolve()
    }))
    const wanted = ['script-src-elem', 'img-src', 'frame-src', 'connect-src', 'eval']
    for (let tries = 0; tries < 500 && !wanted.every(one => directives.includes(one)); ++tries) await new Promise(resolve => setTimeout(resolve, 10))
    return [globalThis.isInjected, ...new Set(directives)]
  })
  assert.equal(refused[0], undefined)
  for (const directive of ['script-src-elem', 'img-src', 'frame-src', 'connect-src', 'eval']) assert.ok(refused.includes(directive), `${directive}: ${refused}`)
})
