// The set that a browser keeps for the site: what happens to it as tabs come and go.
import assert from 'node:assert/strict'
import {test} from 'node:test'
import {ask, open, ready, serve, untilKept, useVisits, where} from './support/visit.js'

useVisits()

const isKept = page => where(page).getByText('kept in this browser').waitFor()

/** Changes the set, and loads the page anew at once. */
const changeAndReload = (page, value) => Promise.all([page.waitForEvent('load'), page.evaluate(region => {
  const request = {jsonrpc: '2.0', id: 1, method: 'tv.set', params: {name: 'region', value: region}}
  globalThis[Symbol.for('emp-window/site')].post(JSON.stringify(request))
  location.reload()
}, value)])

test('what was done last is kept over a reload, each time', async () => {
  await serve()
  const page = await open()
  for (let region = 2; region <= 6; ++region) {
    await changeAndReload(page, region)
    await ready(page)
    await isKept(page)
    assert.equal((await ask(page, 'tv.state')).region, region)
  }
})

test('a set that is at work as its page is loaded anew comes back', async () => {
  await serve()
  const page = await open()
  await ask(page, 'tv.set', {name: 'region', value: 2})
  await untilKept(page, '"region":2')
  await page.workers()[0].evaluate(() => {
    setTimeout(() => {
      const end = performance.now() + 60_000
      while (performance.now() < end);
    })
  })
  await page.reload()
  await ready(page)
  await isKept(page)
  assert.equal((await ask(page, 'tv.state')).region, 2)
})
