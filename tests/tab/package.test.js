// SPDX-License-Identifier: MIT
// The package as npm installs it from one file, without a network, and the examples of its README.
import assert from 'node:assert/strict'
import {execFileSync} from 'node:child_process'
import {copyFile, mkdir, mkdtemp, readFile, readdir, rm, writeFile} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {after, before, test} from 'node:test'
import {fileURLToPath} from 'node:url'
import {gzipSync} from 'node:zlib'
import {page, useBrowser} from '../client/support/browser.js'
import {typescript} from '../client/support/packages.js'
import {example, runIn, scriptsOf} from '../client/support/readme.js'
import {PackageSite, directory} from './support/package.js'

let project  // with the package installed, and nothing else
let installed
let site
useBrowser()
before(async () => {
  project = await mkdtemp(join(tmpdir(), 'tab-package-'))
  await writeFile(join(project, 'package.json'), '{"name": "app", "private": true, "type": "module"}')
  const npm = (...words) => execFileSync('npm', [...words, '--offline', '--no-audit', '--no-fund', '--cache', join(project, '.npm')],
    {cwd: project, encoding: 'utf8', stdio: ['ignore', 'pipe', 'pipe']})
  const tarball = npm('pack', '--silent', directory).trim().split('\n').at(-1)
  npm('install', '--silent', join(project, tarball))
  installed = join(project, 'node_modules', 'emp-window')
  site = await new PackageSite().listen()
})
after(async () => {
  site.close()
  await rm(project, {recursive: true})
})

test('the package has what its entries name, and stays small', async () => {
  const {exports} = JSON.parse(await readFile(join(installed, 'package.json')))
  const named = Object.values(exports).flatMap(entry => typeof entry === 'string' ? [entry] : Object.values(entry))
  const files = await readdir(installed)
  for (const file of named) assert.ok(files.includes(file.slice(2)), file)
  for (const file of ['emp-window.wasm', 'tv.js']) {
    const bytes = gzipSync(await readFile(join(installed, file)), {level: 9}).length
    assert.ok(bytes <= 700 * 1024, `${file} has ${bytes} bytes compressed`)
  }
})

test('tsc --strict takes a sample app', async () => {
  await copyFile(fileURLToPath(new URL('../client/sample/app.ts', import.meta.url)), join(project, 'app.ts'))
  const compilerOptions = {strict: true, noEmit: true, module: 'nodenext', target: 'es2022', lib: ['es2022', 'dom'], types: []}
  await writeFile(join(project, 'tsconfig.json'), JSON.stringify({compilerOptions, files: ['app.ts']}))
  runIn(project, typescript)
})

test('the app of one line shows the channel and the next one', async () => {
  await copyFile(join(installed, 'tv.js'), join(project, 'tv.js'))
  await writeFile(join(project, 'app.html'), example('<!doctype html>'))
  assert.equal(scriptsOf(example('<!doctype html>')).source, 'tv.js')
  // A page from a file can't load modules from files, but it can contain one.
  await page.goto(`file://${project}/app.html`)
  assert.equal(await page.textContent('#name'), 'Lighthouse One')
  await page.click('#next')
  assert.equal(await page.textContent('#name'), 'Lighthouse Two')
})

test('the module puts the object in place', async () => {
  await writeFile(join(project, 'install.js'), `${example('const tv = await createTv()\n')}console.log(tvWindow.GetTVMode())\n`)
  assert.equal(runIn(project, 'install.js'), '1\n')
})

test('the test for Node passes', async () => {
  await writeFile(join(project, 'app.test.js'), example('beforeEach'))
  assert.match(runIn(project, 'app.test.js', ['--test']), /# pass 1\n/)
})

test('the test in the docs passes', async () => {
  const text = await readFile(new URL('../../docs/app.md', import.meta.url), 'utf8')
  const [, code] = /^```js\n(import assert.*?)^```$/ms.exec(text)
  await writeFile(join(project, 'docs.test.js'), code)
  assert.match(runIn(project, 'docs.test.js', ['--test']), /# pass 1\n/)
})

test('the test for Playwright passes', async () => {
  // Replaces the test runner: runs the test with a page from a development server.
  const runner = join(project, 'node_modules', '@playwright', 'test')
  await mkdir(runner, {recursive: true})
  await writeFile(join(runner, 'package.json'), '{"type": "module", "exports": "./index.js"}')
  await writeFile(join(runner, 'index.js'), `import assert from 'node:assert/strict'
    export const tests = []
    export const test = (name, run) => tests.push({name, run})
    export const expect = actual => ({
      toBe: expected => assert.equal(actual, expected),
      toHaveText: async expected => assert.equal(await actual.textContent(), expected),
    })`)
  await writeFile(join(project, 'playwright.js'), `${example('toHaveText')}\nexport {tests} from '@playwright/test'\n`)
  const {tests: [{run}]} = await import(join(project, 'playwright.js'))
  site.pages.set('/', example('<!doctype html>').replace('"tv.js"', '"/package/tv.js"'))
  await page.route('http://localhost:5173/**', async route => {
    const {pathname} = new URL(route.request().url())
    await route.fulfill({response: await route.fetch({url: site.address + pathname})})
  })
  await run({page})
})
