// SPDX-License-Identifier: MIT
// Tests that closed TVs in memory leave nothing behind.
import assert from 'node:assert/strict'
import {test} from 'node:test'
import {useMany} from './support/many.js'

test('a thousand TVs are made and closed without growth', async () => {
  const before = await useMany(200)
  const after = await useMany(800)
  assert.ok(after < before + 64 * 1024 * 1024, `${before} bytes after 200, ${after} after 1,000`)
})
