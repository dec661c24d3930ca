// SPDX-License-Identifier: MIT
// The making of the package: modules become one script, and compressed parts are inflated synchronously.
import assert from 'node:assert/strict'
import {randomBytes} from 'node:crypto'
import {readFile} from 'node:fs/promises'
import {test} from 'node:test'
import vm from 'node:vm'
import zlib from 'node:zlib'
import {bundle} from '../../virtualtv/console/package/bundle.mjs'
import {inflate} from '../../virtualtv/console/package/inflate.js'
import {strip} from '../../virtualtv/console/package/sections.mjs'

test('what zlib deflates is inflated, whatever its blocks are', async () => {
  const text = await readFile(new URL('../../docs/commands.json', import.meta.url))
  const near = Buffer.concat(Array.from({length: 400}, (_, at) => Buffer.alloc(at, at)))
  for (const bytes of [Buffer.alloc(0), Buffer.from('a'), text, near, randomBytes(200_000), Buffer.alloc(300_000)]) {
    for (const options of [{level: 9}, {level: 1}, {level: 0}, {strategy: zlib.constants.Z_FIXED},
      {strategy: zlib.constants.Z_HUFFMAN_ONLY}, {memLevel: 1}]) {
      const inflated = inflate(zlib.deflateRawSync(bytes, options), bytes.length)
      assert.ok(bytes.equals(inflated), `${bytes.length} bytes, ${JSON.stringify(options)}`)
    }
  }
})

test('modules become one script, each once and in the order in which they need each other', () => {
  const script = bundle('./main.js', {
    './main.js': "import {one, two as second} from './parts.js'\nimport './parts.js'\nconst own = 0\nresult.push(one(), second, own)\n",
    './parts.js': "result.push('parts')\nconst own = 1\nexport const two = 2\nexport function one() {\n  return own\n}\n",
  })
  const result = []
  vm.runInNewContext(script, {result})
  assert.deepEqual(result, ['parts', 1, 2, 0])
})

test('a module that can not go into a script is refused', () => {
  for (const line of ["import all from './parts.js'", 'export default 1', 'export {one}', 'import.meta.url']) {
    assert.throws(() => bundle('./main.js', {'./main.js': `${line}\n`}),
      error => error.message === `./main.js: this can't go into a script: ${line}`)
  }
  assert.throws(() => bundle('./main.js', {'./main.js': "import {one} from './none.js'\n"}), /none.js is imported and not there/)
})

test('custom sections are left out of a module, and all else stays', () => {
  const custom = size => [0, 0x80 | (size + 2) % 128, (size + 2) >> 7, 1, 0x78, ...Array(size).fill(7)]
  const head = [0, 0x61, 0x73, 0x6d, 1, 0, 0, 0]
  const memory = [5, 3, 1, 0, 2]
  const exported = [7, 5, 1, 1, 0x6d, 2, 0]
  const stripped = strip(Buffer.from([...head, ...custom(200), ...memory, ...custom(1000), ...exported, ...custom(0)]))
  assert.deepEqual([...stripped], [...head, ...memory, ...exported])
  assert.equal(new WebAssembly.Instance(new WebAssembly.Module(stripped)).exports.m.buffer.byteLength, 2 * 65536)
})
