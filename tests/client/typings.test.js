// SPDX-License-Identifier: MIT
// The typings: a sample app compiles strictly, and its deliberate mistakes don't. commands.d.ts is made from a
// description.
import assert from 'node:assert/strict'
import {spawnSync} from 'node:child_process'
import {cp, mkdir, mkdtemp, rm, symlink, writeFile} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {test} from 'node:test'
import {fileURLToPath} from 'node:url'
import {typings} from '../../virtualtv/console/client/typings.mjs'
import {typescript} from './support/packages.js'

const client = fileURLToPath(new URL('../../virtualtv/console/client', import.meta.url))
const sample = fileURLToPath(new URL('sample/app.ts', import.meta.url))

for (const [library, target] of [['es2022,dom', 'es2022'], ['esnext,dom', 'esnext']]) {
  test(`tsc --strict takes a sample app, with the libraries ${library}`, async () => {
    const directory = await mkdtemp(join(tmpdir(), 'typings-test-'))
    try {
      await mkdir(join(directory, 'node_modules'))
      await symlink(client, join(directory, 'node_modules', 'emp-window'))
      await writeFile(join(directory, 'package.json'), '{"type": "module"}')
      await cp(sample, join(directory, 'app.ts'))
      const compilerOptions = {strict: true, noEmit: true, module: 'nodenext', target, lib: library.split(','), types: []}
      await writeFile(join(directory, 'tsconfig.json'), JSON.stringify({compilerOptions, files: ['app.ts']}))
      const {stdout, status} = spawnSync(process.execPath, [typescript], {cwd: directory, encoding: 'utf8'})
      assert.equal(stdout, '')
      assert.equal(status, 0)
    } finally {
      await rm(directory, {recursive: true})
    }
  })
}

test('a command is made from its description', () => {
  const result = kinds => ({name: 'result', schema: {description: 'What came.', properties: {kind: {enum: kinds}}}})
  const params = [{name: 'index', description: 'Which.'}, {name: 'mode', schema: {}}]
  const text = typings({methods: [
    {name: 'tv.state', params: [], result: {}},
    {name: 'window.execute', params: [], result: {}},
    {name: 'window.GetName', summary: 'Tells */ a name.', params, result: result(['int', 'unicode', 'empty'])},
    {name: 'window.SetIt', summary: 'Sets it.', params: [], result: result(['int', 'empty'])},
  ]})
  assert.equal(text.slice(text.indexOf('interface Commands')), `interface Commands {
  /**
   * Tells * / a name.
   * @param index Which.
   * @returns What came.
   */
  GetName(index?: Parameter, mode?: Parameter): string | number

  /**
   * Sets it.
   * @returns What came.
   */
  SetIt(): number
}
`)
  const schemas = {
    'event.x': {description: 'what x is', anyOf: [{$ref: '#/components/schemas/One'}, {$ref: '#/components/schemas/Two'}]},
    Two: {description: 'Two.', type: 'object', required: ['what'], properties: {what: {const: 'two'}, so: {const: true}}},
    One: {description: 'One thing.', type: 'object', required: ['id', 'many'], properties: {
      id: {description: 'which', type: ['integer', 'null']},
      kind: {enum: ['a', null]},
      many: {type: 'array', items: {anyOf: [{$ref: '#/components/schemas/One'}, {type: 'null'}]}},
      in: {type: 'object', required: ['x'], properties: {x: {description: 'left', type: 'boolean'}}},
    }},
  }
  const documents = typings({methods: [{name: 'window.Do', params: []}], components: {schemas}})
  assert.equal(documents.slice(documents.indexOf('/** One')), `/** One thing. */
export interface One {
  /** which */
  id: number | null
  kind?: 'a' | null
  many: (One | null)[]
  in?: {
    /** left */
    x: boolean
  }
}

/** The events of each topic. */
export interface Events {
  /** what x is */
  x: One | Two
}
`)
  assert.match(documents, /export interface Two \{\n {2}what: 'two'\n {2}so\?: true\n\}/)
  assert.throws(() => typings({methods: []}), /no command in the document/)
})
