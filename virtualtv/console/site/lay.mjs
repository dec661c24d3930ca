// SPDX-License-Identifier: MIT
// node lay.mjs CONSOLE PACKAGE SITE: creates the site in the folder SITE from the page, the package's client and module,
// and the files of this folder. CONSOLE is the folder that contains page and site, PACKAGE the one that tools/wasm
// prints.
import {createHash} from 'node:crypto'
import {cpSync, mkdirSync, readdirSync, readFileSync, rmSync, writeFileSync} from 'node:fs'
import {join} from 'node:path'

const [consoleFolder, packageFolder, site] = process.argv.slice(2)
const own = join(consoleFolder, 'site')
// As strict as the server's. Only a header can restrict who may show the page in a frame.
const policy = "default-src 'self'; script-src 'self' 'wasm-unsafe-eval'; media-src 'self' blob:; frame-src 'self'; object-src 'none'; " +
  "base-uri 'none'; form-action 'none'"
const clientFiles = /^(client|connected|create|events|kept|load|memory|module|port|transcript|wire|window|tv)\.js$|^emp-window\.wasm$/

const read = path => readFileSync(path, 'utf8')

/** Changes a file of the site. Fails if nothing changes, since the file then differs from what this script expects. */
function change(path, what) {
  const before = read(join(site, path))
  const after = what(before)
  if (after === before) throw new Error(`${path} is not as lay.mjs expects it`)
  writeFileSync(join(site, path), after)
}

function copyAll() {
  rmSync(site, {recursive: true, force: true})
  mkdirSync(site, {recursive: true})
  for (const name of readdirSync(packageFolder).filter(name => clientFiles.test(name))) cpSync(join(packageFolder, name), join(site, name))
  cpSync(join(consoleFolder, 'page'), join(site, 'page'), {recursive: true, filter: name => !name.endsWith('tsconfig.json')})
  cpSync(join(site, 'page/index.html'), join(site, 'index.html'))
  rmSync(join(site, 'page/index.html'))
  for (const folder of ['page', 'set']) cpSync(join(own, folder), join(site, folder), {recursive: true})
}

const filesBeneath = folder => readdirSync(folder, {recursive: true, withFileTypes: true}).filter(entry => entry.isFile())
  .map(entry => join(entry.parentPath ?? entry.path, entry.name).slice(folder.length + 1)).sort()

/** The hash with which browsers verify a file. */
const integrity = path => `sha256-${createHash('sha256').update(readFileSync(join(site, path))).digest('base64')}`

const notStarted = `<main class="not-started">
<h1>emp-window</h1>
<p>The TV has not started.</p>
<p>Was this page opened as a file? Browsers load no modules from files. Put the folder on a web server, on your machine by <code>python3 -m http.server</code> in it.</p>
<p>Does it come from a web server? Then one of its files could not be loaded. Reload the page.</p>
</main>
`

copyAll()
change('index.html', text => text.replace('</head>', '<link rel="stylesheet" href="page/not-started.css">\n$&')
  .replace('<emp-workbench></emp-workbench>\n', `$&${notStarted}`))
for (const path of filesBeneath(site).filter(path => path.endsWith('.html'))) {
  change(path, text => text.replace('<meta charset="utf-8">\n', `$&<meta http-equiv="Content-Security-Policy" content="${policy}">\n`))
}
writeFileSync(join(site, 'window.js'), `${read(join(own, 'frame.js'))};\n${read(join(packageFolder, 'window.js'))}`)
const files = JSON.stringify(Object.fromEntries(filesBeneath(site).map(path => [path, integrity(path)])), null, 1)
const version = createHash('sha256').update(files).digest('hex').slice(0, 16)
writeFileSync(join(site, 'service-worker.js'), `const files = ${files}\nconst version = '${version}'\n\n${read(join(own, 'service-worker.js'))}`)
