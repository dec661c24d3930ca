// SPDX-License-Identifier: MIT
// Tests `launch`: how the TV starts, and that it ends.
import assert from 'node:assert/strict'
import {spawn} from 'node:child_process'
import {once} from 'node:events'
import {chmod, mkdtemp, readFile, rm, writeFile} from 'node:fs/promises'
import {tmpdir} from 'node:os'
import {join} from 'node:path'
import {after, before, test} from 'node:test'
import {launch} from '../../virtualtv/console/client/launch.js'
import {program} from './support/server.js'
import {silenced, until} from './support/wait.js'

const launcher = new URL('../../virtualtv/console/client/launch.js', import.meta.url)
let directory
before(async () => {
  directory = await mkdtemp(join(tmpdir(), 'launch-test-'))
})
after(() => rm(directory, {recursive: true}))

/** Whether a process runs. One that has ended may still await its parent's wait. */
async function isRunning(pid) {
  const stat = await readFile(`/proc/${pid}/stat`, 'utf8').catch(() => ') X')
  return !/\) [XZ]/.test(stat)
}

/** A program written as a shell script. */
async function fake(name, script) {
  const path = join(directory, name)
  await writeFile(path, `#!/bin/sh\n${script}\n`)
  await chmod(path, 0o755)
  return path
}

test('each TV is fresh and its own, and ends with close', async () => {
  const [one, other] = await Promise.all([launch(), launch({appId: 'com.example.guide'})])
  assert.notEqual(one.address, other.address)
  await one.set('main.source', 13)
  assert.equal(await one.window.GetSource(0), 31)
  assert.equal(await other.window.GetSource(0), 0)
  const start = performance.now()
  await Promise.all([one.close(), other.close()])
  assert.ok(performance.now() - start < 4000, 'they end by themselves, before they would be killed')
  assert.deepEqual([await isRunning(one.pid), await isRunning(other.pid)], [false, false])
  await one.close()
})

test('a list is imported, by its path or URL', async () => {
  const list = join(directory, 'channels.conf')
  await writeFile(list, 'Örtlich;Test:11836:HC34M2O0S0:S19.2E:27500:101:102=deu:104:0:28106:1:1101:0\n')
  for (const file of [list, new URL(`file://${list}`)]) {
    const tv = await launch({list: file})
    const {total} = await tv.services()
    assert.equal(total, 1)
    await tv.close()
  }
})

test('a list that is not UTF-8 or not there is told, and the program ends', async () => {
  const list = join(directory, 'latin1.conf')
  await writeFile(list, Buffer.from('\xD6rtlich:1:h\n', 'latin1'))
  await assert.rejects(launch({list}), /latin1.conf: not UTF-8/)
  await assert.rejects(launch({list: join(directory, 'none.conf')}), {code: 'ENOENT'})
})

test('a snapshot is where it starts, as a document or a file', async () => {
  const first = await launch()
  await first.set('country', 42)
  const snapshot = await first.snapshot()
  await first.close()
  const file = join(directory, 'snapshot.json')
  await writeFile(file, JSON.stringify(snapshot))
  for (const given of [snapshot, file]) {
    const tv = await launch({snapshot: given})
    assert.equal(Number(await tv.get('country')), 42)
    await tv.close()
  }
})

test('a state directory keeps what it is given', async () => {
  const state = join(directory, 'state')
  const first = await launch({state})
  await first.set('country', 7)
  await first.close()
  const second = await launch({state})
  assert.equal(Number(await second.get('country')), 7)
  await second.close()
})

test('a program that is missing, fails or is another one is told with what it wrote', async () => {
  await assert.rejects(launch({program: join(directory, 'none')}), /none serve .*: there is no such program; EMP_WINDOW/)
  await assert.rejects(launch({options: ['--nonsense']}), /--nonsense: ended with status 2\n.*--nonsense/s)
  await assert.rejects(launch({program: await fake('talks', 'echo hello; echo more >&2; exec sleep 60')}),
    /an address is wanted in its first line, not 'hello'/)
  await assert.rejects(launch({program: await fake('dies', 'kill -9 $$')}), /ended with signal SIGKILL/)
})

test('a program that ends by itself is told on the console', async context => {
  const errors = silenced('error', context)
  const tv = await launch()
  process.kill(tv.pid, 'SIGKILL')
  await until(() => errors().length > 0)
  assert.match(errors()[0], /emp-window ended with SIGKILL/)
  await tv.close()
})

test('the TV ends when the process that launched it is killed', async () => {
  const script = `import {launch} from '${launcher}'; const tv = await launch(); console.log(tv.pid); setInterval(() => {}, 1000)`
  const parent = spawn(process.execPath, ['--input-type=module', '-e', script],
    {stdio: ['ignore', 'pipe', 'inherit'], env: {...process.env, EMP_WINDOW: program}})
  const [line] = await once(parent.stdout.setEncoding('utf8'), 'data')
  const pid = Number(line)
  assert.ok(await isRunning(pid))
  parent.kill('SIGKILL')
  await until(async () => !await isRunning(pid), 'the TV has ended')
})
