// SPDX-License-Identifier: MIT
// Tests the app's page in a browser, on a separate TV.
import assert from 'node:assert/strict'
import {once} from 'node:events'
import {readFile} from 'node:fs/promises'
import {createServer} from 'node:http'
import {after, afterEach, before, beforeEach, test} from 'node:test'
import {launch} from 'emp-window/launch'
import {chromium} from 'playwright-core'

let browser
let page
let site
let tv
before(async () => {
  browser = await chromium.launch({executablePath: process.env.CHROMIUM ?? '/usr/bin/chromium', args: ['--no-sandbox']})
  site = createServer(serve).listen(0, '127.0.0.1')
  await once(site, 'listening')
})
after(async () => {
  await browser.close()
  site.close()
})
beforeEach(async () => {
  const address = `http://127.0.0.1:${site.address().port}`
  tv = await launch({options: ['--allow-origin', address]})
  page = await browser.newPage()
  await page.goto(`${address}/`)
})
afterEach(async () => {
  await page.close()
  await tv.close()
})

/** Serves the app like a development server, but gives the page the TV that the test controls. */
async function serve(request, response) {
  const name = request.url === '/' ? 'index.html' : request.url.slice(1)
  const line = `document.write('<script src="${tv.address}/window.js?name=tvWindow"></script>')`
  try {
    const content = name === 'tv.js' ? line : await readFile(new URL(`../${name}`, import.meta.url))
    response.writeHead(200, {'Content-Type': name.endsWith('.js') ? 'text/javascript' : 'text/html'}).end(content)
  } catch {
    response.writeHead(404).end()
  }
}

test('a press on a channel puts it on the screen', async () => {
  assert.equal(await page.textContent('#onScreen'), 'Lighthouse One')
  await page.click('text=Lighthouse News')
  assert.equal(await page.textContent('#onScreen'), 'Lighthouse News')
  assert.equal(await tv.window.GetCurrentChannel_Name(), 'Lighthouse News')
})

test('the page that is loaded while HDMI is on says so', async () => {
  await tv.set('main.source', 13)
  await page.reload()
  assert.equal(await page.textContent('#onScreen'), 'Another input')
})
