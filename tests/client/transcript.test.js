// SPDX-License-Identifier: MIT
// Reading transcripts, running them on a plug-in, and reporting the results.
import assert from 'node:assert/strict'
import {test} from 'node:test'
import {junitReport, readTranscript, runTranscript, splitWords} from '../../virtualtv/console/client/transcript.js'

/** A plug-in that answers from a table and records its calls. */
function plugin(answers, more = {}) {
  const calls = []
  return {calls, ...more, Execute: (...words) => {
    calls.push(words)
    const answer = answers[words[0]]
    if (answer instanceof Error) throw answer
    return typeof answer === 'function' ? answer(...words.slice(1)) : answer
  }}
}

const virtual = (answers, run) => plugin(answers, {isVirtual: true, run})

test('words are split as by the shell', () => {
  assert.deepEqual(splitWords(`Name  a\\ b 'c "\\ d' "e \\" \\x \\\\"f ''\t`), ['Name', 'a b', 'c "\\ d', 'e " \\x \\f', ''])
  assert.deepEqual(splitWords('Name\\ '), ['Name '])
  assert.deepEqual(splitWords(String.raw`$'a b\n\r\t\'\"\\' x$'\x41\303\251'y $''`), ['a b\n\r\t\'"\\', 'xAéy', ''])
  assert.deepEqual(splitWords(''), [])
  for (const open of ["Name 'a", 'Name "a', 'Name "a\\"', 'Name \\']) assert.equal(splitWords(open), undefined, open)
})

test('inputs, what they print and remarks are told apart; what is no transcript is refused', () => {
  const {opening, steps} = readTranscript('\uFEFF# one\r\n\n> A\nint 1\n\n# two\n>  B\n')
  assert.deepEqual(opening, ['# one', ''])
  assert.deepEqual(steps, [{line: 3, input: '> A', expected: ['int 1'], remarks: ['', '# two']},
    {line: 7, input: '>  B', expected: [], remarks: []}])
  assert.throws(() => readTranscript('int 1\n', 'a.txt'), /^SyntaxError: a.txt:1: output before the first '>' line/)
  assert.throws(() => readTranscript('> A\n\nint 1\n', 'a.txt'), /a.txt:3: output must directly follow its '>' line/)
  assert.throws(() => readTranscript('# none\n', 'a.txt'), /a.txt: there is no '>' line to run/)
})

test('each kind of reply is compared by its value', async () => {
  const text = [
    '> Int', 'int -1', '> Ascii', 'ascii a \\x b', '> Empty', 'ascii', '> Unicode', 'unicode "\\"\\\\\\u0007\\uD800 ä"',
    '> Lines', 'ascii |', '| {', '|', '| \\xC3\\xA4\\x07 \\x5C', '> Part', 'ascii |', '| a', '| b\\', '> Bar', 'ascii |', '| |\\',
    '> None', 'empty', '> NoText', 'empty', '> Refused', 'refused', '> Written', 'refused int -1',
    '> WrittenLines', 'refused ascii |', '| a', '',
  ].join('\n')
  const answers = {
    Int: -1, Ascii: 'a \\x b', Empty: '', Unicode: '"\\\u0007\uD800 ä', Lines: '{\n\nä\u0007 \\\n', Part: 'a\nb', Bar: '|',
    NoText: '', Written: -1, WrittenLines: 'a\n',
  }
  const result = await runTranscript(text, plugin(answers))
  assert.equal(result.diff, '')
  assert.equal(result.passed, true)
})

test('a promise of a reply will do, and parameters are texts', async () => {
  const asynchronous = plugin({SetChannel: async (...words) => words.length})
  assert.equal((await runTranscript("> SetChannel 3 'a b' '' 4\nint 4\n", asynchronous)).passed, true)
  assert.deepEqual(asynchronous.calls, [['SetChannel', '3', 'a b', '', '4']])
})

test('what differs is shown as the shell prints it, in a unified diff', async () => {
  const text = '# start\n> A\nint 1\n> B\nunicode "x"\n# then\n> C\nascii |\n| {\n|   1\n| }\n> D\nint 1\n> E\nint 1\n> F\nint 1\n'
  const answers = {A: 1, B: 'y"', C: '{\n  2\n}\n', D: '1', E: new Error('no\nserver'), F: undefined}
  const result = await runTranscript(text, plugin(answers), {name: 'a.txt'})
  assert.equal(result.passed, false)
  assert.equal(result.diff, `--- a.txt
+++ a.txt (printed now)
@@ -2,16 +2,16 @@
 > A
 int 1
 > B
-unicode "x"
+unicode "y\\""
 # then
 > C
 ascii |
 | {
-|   1
+|   2
 | }
 > D
-int 1
+ascii 1
 > E
-int 1
+error: no\\x0Aserver
 > F
-int 1
+empty
`)
  assert.deepEqual(result.steps.map(step => step.passed), [true, false, false, false, false, false])
  assert.equal(result.steps[1].failure, '--- expected\n+++ printed\n@@ -1,1 +1,1 @@\n-unicode "x"\n+unicode "y\\""\n')
  assert.deepEqual([result.steps[1].line, result.steps[1].input], [4, '> B'])
})

test('on a set the lines that speak to the virtual TV are listed as skipped, with what only it prints', async () => {
  const text = `> .trace on
> GetTVMode
int 1
call IServiceNavigation[main#1]::GetTvMode() mode=0,1 -> 1
> .trace off
>+ SetScreenCropRect 1 2 3 4 5 6 7 8 9
int 1
> A 1 2 3 4 5
error: A: 5 parameters, at most 4 are passed
> A 'b
error: no closing ' for the one at column 3
> .get clock
clock = 0
>
`
  const set = plugin({GetTVMode: 1})
  const result = await runTranscript(text, set)
  assert.equal(result.passed, true)
  assert.deepEqual(set.calls, [['GetTVMode']])
  assert.deepEqual(result.skipped.map(({line, reason}) => [line, reason]), [
    [1, 'it speaks to the virtual TV'], [5, 'it speaks to the virtual TV'], [6, 'Execute takes no list of parameters'],
    [8, 'Execute takes at most four parameters'], [10, 'a quote is open, or nothing follows a backslash'],
    [12, 'it speaks to the virtual TV']])
})

test('on a virtual TV they run there, and so do commands while their calls are printed', async () => {
  const lines = []
  const tv = virtual({GetTVMode: 1}, line => {
    lines.push(line)
    return {'.trace on': [], '.trace off': [], GetTVMode: ['int 1', 'call X'], GetSource: ['int 0'], '.why': ['X'], '.fault': []}[line]
  })
  const result = await runTranscript(`> GetTVMode
int 1
> .trace on
> GetTVMode
int 1
call X
> .trace off
> GetTVMode
int 1
> GetSource
int 0
> .why
X
`, tv)
  assert.equal(result.diff, '')
  assert.deepEqual(lines, ['.fault', '.trace on', 'GetTVMode', '.trace off', 'GetSource', '.why', '.fault'])
  assert.deepEqual(tv.calls, [['GetTVMode'], ['GetTVMode']])
  assert.deepEqual(result.skipped, [])
})

test('on a virtual TV a call that is printed but not expected differs', async () => {
  const tv = virtual({}, async line => ({lines: line === 'GetTVMode' ? ['int 1', 'call X'] : []}))
  assert.equal((await runTranscript('> .trace on\n> GetTVMode\nint 1\n', tv)).passed, false)
})

test('a fault that no call has met fails a transcript, unless it was there before', async () => {
  let lists = [['1 Old result=0 (hits: 0)'], ['1 Old result=0 (hits: 0)', '2 New result=0 (hits: 0)', '3 Met result=0 (hits: 1)']]
  const tv = virtual({}, line => line === '.fault' ? lists.shift() : [])
  const result = await runTranscript('> .fault New result=0\n', tv)
  assert.equal(result.passed, false)
  assert.deepEqual(result.findings, ['a fault was never hit: 2 New result=0 (hits: 0)'])
  assert.match(result.junit, /tests="2" failures="1"/)
})

test('idle faults do not fail a transcript that a server has recorded', async () => {
  let lists = [[], ['1 New result=0 (hits: 0)']]
  const tv = virtual({}, line => line === '.fault' ? lists.shift() : [])
  assert.equal((await runTranscript('> .recorded\n> .fault New result=0\n', tv)).passed, true)
})

test('the report has each line, and texts that XML would not take are escaped', async () => {
  const set = plugin({A: 1, B: '<\u0001&'})
  const one = await runTranscript('> A\nint 1\n> .get\n> B "<"\nascii x\n', set, {name: 'a&b.txt'})
  const other = await runTranscript('> A\nint 1\n', set, {name: 'c.txt'})
  const xml = junitReport([one, other]).replace(/time="[\d.]+"/g, 'time="T"')
  assert.equal(xml, `<?xml version="1.0" encoding="UTF-8"?>
<testsuites tests="4" failures="1" errors="0" skipped="1" time="T">
  <testsuite name="a&amp;b.txt" tests="3" failures="1" errors="0" skipped="1" time="T">
    <testcase classname="a&amp;b.txt" name="1: &gt; A" time="T"/>
    <testcase classname="a&amp;b.txt" name="3: &gt; .get" time="T">
      <skipped message="it speaks to the virtual TV"/>
    </testcase>
    <testcase classname="a&amp;b.txt" name="4: &gt; B &quot;&lt;&quot;" time="T">
      <failure message="a&amp;b.txt:4: not as expected">--- expected&#10;+++ printed&#10;@@ -1,1 +1,2 @@&#10;-ascii x&#10;+ascii |&#10;+| &lt;\\x01&amp;\\&#10;</failure>
    </testcase>
  </testsuite>
  <testsuite name="c.txt" tests="1" failures="0" errors="0" skipped="0" time="T">
    <testcase classname="c.txt" name="1: &gt; A" time="T"/>
  </testsuite>
</testsuites>
`)
})
