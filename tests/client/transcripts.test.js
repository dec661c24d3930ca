// SPDX-License-Identifier: MIT
// Runs all transcripts of the tree on a launched TV, and on an object that has only `Execute`.
import assert from 'node:assert/strict'
import {test} from 'node:test'
import {launch} from '../../virtualtv/console/client/launch.js'
import {runTranscript} from '../../virtualtv/console/client/transcript.js'
import {testTranscripts, transcript} from './support/transcripts.js'

await testTranscripts('on a launched TV', launch)

test('a set without the virtual TV gets the plug-in\'s lines alone', async t => {
  const tv = await launch()
  t.after(() => tv.close())
  const text = await transcript('hdmi-and-back.txt')
  const result = await runTranscript(text, {Execute: (name, ...parameters) => tv.Execute(name, ...parameters)})
  const dots = text.split('\n').filter(line => /^> *\./.test(line)).length
  assert.equal(result.skipped.length, dots)
  assert.ok(result.steps.length - dots > 20)
  assert.equal(result.passed, true, result.diff)
})

test('what a transcript does not expect is found', async t => {
  const tv = await launch()
  t.after(() => tv.close())
  const result = await runTranscript('> .fault IServiceNavigation::GetTvMode nth=9 result=0\n> GetTVMode\nint 2\n', tv)
  assert.equal(result.passed, false)
  assert.match(result.diff, /^-int 2\n\+int 1$/m)
  assert.equal(result.findings.length, 1)
  assert.match(result.findings[0], /^a fault was never hit: fault \d+: IServiceNavigation::GetTvMode nth=9 /)
})
