// SPDX-License-Identifier: MIT
// The typings of commands are what their generator makes of the server's description.
import assert from 'node:assert/strict'
import {readFile} from 'node:fs/promises'
import {after, test} from 'node:test'
import {typings} from '../../virtualtv/console/client/typings.mjs'
import {endServers, serve} from './support/server.js'

after(endServers)

test('commands.d.ts is up to date', async () => {
  const server = await serve()
  const document = await (await fetch(`${server.address}/openrpc.json`)).json()
  const committed = await readFile(new URL('../../virtualtv/console/client/commands.d.ts', import.meta.url), 'utf8')
  assert.equal(committed, typings(document), 'make it anew: the README of the client says how')
})
