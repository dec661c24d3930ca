// SPDX-License-Identifier: MIT
// node run.mjs [FILE...]: runs the tests of the site and those of the page on the site, or only the named files. Tests
// of the page that make no sense on a site are skipped with a reason. EMP_WINDOW_SITE names the site's folder.
import {readdirSync, statSync} from 'node:fs'
import {basename, join, resolve} from 'node:path'
import {run} from 'node:test'
import {spec} from 'node:test/reporters'
import {fileURLToPath} from 'node:url'

const together = 2  // number of files at a time; each has a browser of its own
const patience = 1_800_000  // ms until a hanging file is ended; a test that waits for something fails earlier

const here = fileURLToPath(new URL('.', import.meta.url))

/** The tests in a folder. */
const tests = folder => readdirSync(folder).filter(name => name.endsWith('.test.js')).map(name => join(folder, name))

/** The tests of both folders. The longest come first, so that none of them is left to run alone at the end. */
function all() {
  return [here, join(here, '../web')].flatMap(tests).map(file => ({file, size: statSync(file).size}))
    .sort((one, other) => other.size - one.size).map(({file}) => file)
}

const files = process.argv.length > 2 ? process.argv.slice(2).map(name => resolve(name)) : all()
const start = performance.now()
const failed = new Set()
const stream = run({files, concurrency: together, timeout: patience})
stream.on('test:fail', ({file, name}) => failed.add(basename(file ?? name)))
stream.compose(new spec()).pipe(process.stdout, {end: false})
await new Promise(resolve => stream.once('end', resolve))
console.log(`${files.length} files in ${Math.round((performance.now() - start) / 1000)} s`)
if (failed.size > 0) console.log(`Failed: ${[...failed].join(', ')}`)
process.exitCode = failed.size > 0 ? 1 : 0
