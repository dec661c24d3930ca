// A TV in memory in Node 18, the oldest that can have one.
import assert from 'node:assert/strict'
import {execFileSync} from 'node:child_process'
import {existsSync} from 'node:fs'
import {join} from 'node:path'
import {test} from 'node:test'
import {urlOf} from './support/package.js'

const program = join(process.env.EMP_WINDOW_CLIENT_PACKAGES ?? '', 'node18', 'node')
const skip = existsSync(program) ? false : 'there is no Node 18 for this machine'

test('Node 18 makes a TV, runs commands at once and by promises, and ends', {skip}, () => {
  const script = `
    import {createTv, installWindow} from '${urlOf('client.js')}'
    const tv = await createTv()
    const tvWindow = installWindow(globalThis, {tv, name: 'tvWindow'})
    const seen = []
    await tv.on('service', event => seen.push(event.number)).ready
    await tv.window.SetChannel(3, 0)
    const snapshot = await tv.snapshot()
    const again = await createTv({snapshot})
    console.log(process.version.split('.')[0], tvWindow.GetCurrentChannel_Name(), seen.length, await again.window.GetTVMode())
    await Promise.all([tv.close(), again.close()])`
  const printed = execFileSync(program, ['--input-type=module', '-e', script], {encoding: 'utf8', timeout: 60_000,
    env: {...process.env, NODE_TEST_CONTEXT: undefined}})
  assert.equal(printed, 'v18 Lighthouse News 2 1\n')
})
