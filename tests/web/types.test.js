// SPDX-License-Identifier: MIT
// The page's modules fit each other and the client: TypeScript's compiler checks the types in their comments.
import assert from 'node:assert/strict'
import {spawnSync} from 'node:child_process'
import {test} from 'node:test'
import {fileURLToPath} from 'node:url'
import {typescript} from '../client/support/packages.js'

test('types are right', () => {
  const project = fileURLToPath(new URL('../../virtualtv/console/page/tsconfig.json', import.meta.url))
  const {status, stdout} = spawnSync(process.execPath, [typescript, '-p', project], {encoding: 'utf8'})
  assert.equal(status, 0, stdout)
})
