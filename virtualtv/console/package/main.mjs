/*
 * main.mjs WASM DIRECTORY: makes the package that npm installs: the client, the set's module as emp-window.wasm, and the script
 * tv.js, which has all of it inside.
 */
import {copyFileSync, mkdirSync, readFileSync, readdirSync, rmSync, writeFileSync} from 'node:fs'
import {join} from 'node:path'
import {fileURLToPath} from 'node:url'
import {deflateRawSync} from 'node:zlib'
import {bundle} from './bundle.mjs'

const pathOf = place => fileURLToPath(new URL(place, import.meta.url))

/** A module of the bytes, compressed. */
function bytesModule(bytes) {
  const base64 = deflateRawSync(bytes, {level: 9, memLevel: 9}).toString('base64')
  return `export const size = ${bytes.length}\nexport const base64 = '${base64}'\n`
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
copyFileSync(wasm, join(directory, 'emp-window.wasm'))
const text = file => readFileSync(file, 'utf8')
const scripts = {'./bytes.js': bytesModule(readFileSync(wasm))}
for (const name of ['module', 'window', 'events', 'wire', 'connected', 'memory']) {
  scripts[`./${name}.js`] = text(join(directory, `${name}.js`))
}
for (const name of ['inflate', 'script']) scripts[`./${name}.js`] = text(pathOf(`${name}.js`))
writeFileSync(join(directory, 'tv.js'), bundle('./script.js', scripts))
