// What many TVs in memory leave behind: nothing.
import assert from 'node:assert/strict'
import {test} from 'node:test'
import {createTv, installWindow} from './support/package.js'

/** Makes, uses and closes TVs. @return the bytes that the process then takes */
async function use(count) {
  for (let at = 0; at < count; ++at) {
    const tv = await createTv()
    installWindow({}, {tv, name: 'tvWindow'}).GetTVMode()
    await tv.close()
  }
  return process.memoryUsage().rss
}

test('a thousand TVs are made and closed without growth', async () => {
  const before = await use(200)
  const after = await use(800)
  assert.ok(after < before + 64 * 1024 * 1024, `${before} bytes after 200, ${after} after 1,000`)
})
