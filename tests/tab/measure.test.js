// SPDX-License-Identifier: MIT
// The table of tools/wasm --measure.
import assert from 'node:assert/strict'
import {test} from 'node:test'
import {missed, tableOf} from './measure/table.js'

const met = {what: 'start', is: 12.345, wanted: 60, unit: 'ms', detail: 'median 14 ms'}
const over = {what: 'a call / natively', is: 8.01, wanted: 8, unit: ''}

test('a figure is missed that is more than what is wanted', () => {
  assert.deepEqual(missed([met, over]), [over])
  assert.deepEqual(missed([met, {...over, is: 8}]), [])
})

test('the table tells figures with their units, and which are missed', () => {
  assert.deepEqual(tableOf([met, over]).slice(2), [
    '| start | 12.3 ms | median 14 ms | <= 60 ms |  |',
    '| a call / natively | 8.01 |  | <= 8 | MISSED |',
  ])
})
