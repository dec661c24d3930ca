// SPDX-License-Identifier: MIT
// The set that a browser persists for the site, while tabs are opened and closed.
import assert from 'node:assert/strict'
import {readFileSync} from 'node:fs'
import {test} from 'node:test'
import {findings} from '../web/support/axe.js'
import {ask, how, open, ready, serve, untilKept, useVisits, where} from './support/visit.js'

useVisits()

const isKept = page => where(page).getByText('stored in this browser').waitFor()

/** Changes the set, and reloads the page at once. */
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

/** Replaces the persisted data, and reloads the page. */
async function spoil(page, record) {
  await page.evaluate(async value => {
    const open = indexedDB.open('emp-window')
    await new Promise(resolve => { open.onsuccess = resolve })
    const put = open.result.transaction('sets', 'readwrite').objectStore('sets').put(value, location.pathname)
    await new Promise(resolve => { put.onsuccess = resolve })
    open.result.close()
  }, record)
  await page.reload()
  await ready(page)
}

for (const [what, record, reason] of [
  ['no snapshot', {format: 1, snapshot: {broken: true}}, 'not a snapshot of a set'],
  ['of a format to come', {format: 2, more: 'to come'}, 'its format is 2, not 1'],
]) {
  test(`what is kept and ${what} is told, saved as a file and cleared`, async () => {
    await serve()
    const page = await open()
    await spoil(page, record)
    await where(page).getByText('not stored, see Set').waitFor()
    await (await how(page)).getByText(`What this browser stores can't be used: ${reason}`).waitFor()
    assert.deepEqual(await findings(page), [])
    const [download] = await Promise.all([page.waitForEvent('download'), page.getByRole('button', {name: 'Save it as a file'}).click()])
    assert.deepEqual(JSON.parse(readFileSync(await download.path())), record.snapshot ?? record)
    await page.getByRole('button', {name: 'Clear it', exact: true}).click()
    const dialog = page.getByRole('dialog', {name: 'Clear the stored data?'})
    assert.deepEqual(await findings(page), [])
    await dialog.getByRole('button', {name: 'Cancel'}).click()
    await untilKept(page, JSON.stringify(record).slice(1, -1))
    await page.getByRole('button', {name: 'Clear it', exact: true}).click()
    await dialog.getByRole('button', {name: 'Clear', exact: true}).click()
    await isKept(page)
    assert.equal(await page.getByRole('button', {name: 'Clear it'}).count(), 0)
  })
}
