// SPDX-License-Identifier: MIT
/*
 * main.mjs WASM DIRECTORY: builds the npm package in DIRECTORY: the client, the set's module as emp-window.wasm, and
 * the script tv.js, which contains both.
 */
import {execFileSync} from 'node:child_process'
import {copyFileSync, mkdirSync, readFileSync, readdirSync, rmSync, statSync, writeFileSync} from 'node:fs'
import {join} from 'node:path'
import {fileURLToPath} from 'node:url'
import {deflateRawSync} from 'node:zlib'
import {bundle} from './bundle.mjs'
import {strip} from './sections.mjs'
import {started} from './started.mjs'

const pathOf = place => fileURLToPath(new URL(place, import.meta.url))

/** Compresses a file with a slower program, which saves 5 % compared with zlib. */
function deflated(file) {
  try {
    return execFileSync('zopfli', ['--deflate', '--i5', '-c', file], {maxBuffer: 2 ** 30})
  } catch (error) {
    if (error.code !== 'ENOENT') throw error
    console.error('main.mjs: without zopfli the script gets a twentieth larger')
    return deflateRawSync(readFileSync(file), {level: 9, memLevel: 9})
  }
}

/** A module with the compressed content of a file. */
function bytesModule(file) {
  const size = statSync(file).size
  return `export const size = ${size}\nexport const base64 = '${deflated(file).toString('base64')}'\n`
}

function copyClient(directory) {
  const client = pathOf('../client/')
  for (const name of readdirSync(client)) copyFileSync(join(client, name), join(directory, name))
}

const [wasm, directory] = process.argv.slice(2)
if (process.argv.length !== 4) {
  console.error('main.mjs WASM DIRECTORY')
  process.exit(2)
}
rmSync(directory, {recursive: true, force: true})
mkdirSync(directory, {recursive: true})
copyClient(directory)
const module = join(directory, 'emp-window.wasm')
writeFileSync(module, strip(started(readFileSync(wasm))))
const text = file => readFileSync(file, 'utf8')
const scripts = {'./bytes.js': bytesModule(module)}
for (const name of ['module', 'window', 'events', 'wire', 'connected', 'memory']) {
  scripts[`./${name}.js`] = text(join(directory, `${name}.js`))
}
for (const name of ['inflate', 'script']) scripts[`./${name}.js`] = text(pathOf(`${name}.js`))
writeFileSync(join(directory, 'tv.js'), bundle('./script.js', scripts))
