// node run.mjs [FILE...]: runs the site's tests, or those that are named, which may be those of the page: they run on the site
// then. Those that make no sense there stand in elsewhere.tsv, with the reason. EMP_WINDOW_SITE names the site's folder.
import assert from 'node:assert/strict'
import {readdirSync, readFileSync} from 'node:fs'
import {basename, join} from 'node:path'
import {run} from 'node:test'
import {spec} from 'node:test/reporters'
import {fileURLToPath} from 'node:url'

const here = fileURLToPath(new URL('.', import.meta.url))
const web = join(here, '../web')
const tests = folder => readdirSync(folder).filter(name => name.endsWith('.test.js')).map(name => join(folder, name))

/** Tests that are for a server alone: {file, name} of each. */
function elsewhere() {
  const lines = readFileSync(join(here, 'elsewhere.tsv'), 'utf8').split('\n').filter(line => line && !line.startsWith('#'))
  return lines.map(line => {
    const [file, name, reason] = line.split('\t')
    assert.ok(reason, `elsewhere.tsv: a file, a test and a reason are wanted: ${line}`)
    if (name !== '*') assert.ok(readFileSync(join(web, file), 'utf8').includes(name), `elsewhere.tsv: ${file} has no test '${name}'`)
    return {file, name}
  })
}

const literal = text => text.replace(/[.*+?^${}()|[\]\\/]/g, '\\$&')

/** Runs a file. @return {Promise<boolean>} whether all of it passed */
async function passes(file, left) {
  const names = left.filter(one => one.file === basename(file) && file.startsWith(web)).map(({name}) => literal(name))
  const stream = run({files: [file], ...names.length > 0 && {testNamePatterns: [new RegExp(`^(?!(?:${names.join('|')})$)`)]}})
  let isPassed = true
  stream.on('test:fail', () => { isPassed = false })
  stream.compose(new spec()).pipe(process.stdout, {end: false})
  await new Promise(resolve => stream.once('end', resolve))
  return isPassed
}

const left = elsewhere()
const named = process.argv.slice(2).map(name => join(process.cwd(), name))
const whole = left.filter(({name}) => name === '*').map(({file}) => join(web, file))
const files = named.length > 0 ? named.filter(file => !whole.includes(file)) : tests(here)
const failed = []
for (const file of files) if (!await passes(file, left)) failed.push(basename(file))
if (failed.length > 0) console.log(`Failed: ${failed.join(', ')}`)
process.exitCode = failed.length > 0 ? 1 : 0
