// SPDX-License-Identifier: MIT
// What a client can do with a set, here on a server. tests/tab runs the same cases on sets in memory.
import assert from 'node:assert/strict'
import {test} from 'node:test'
import {installWindow} from '../../virtualtv/console/client/node.js'
import {launch} from '../../virtualtv/console/client/launch.js'
import {cases, runCase} from './support/cases.js'

const install = (target, {address}, options) => installWindow(target, {address, ...options})

for (const one of cases.all) {
  test(`${one.name}, on a server`, async () => {
    assert.deepEqual(await runCase(one, launch, install), one.expected)
  })
}
