// SPDX-License-Identifier: MIT
/*
 * Runs transcripts on anything that has the plug-in's `Execute`: a virtual TV of client.js, an app's own object, or the
 * object on a real set. Transcripts are sessions that emp-window's shell prints and `emp-window check` replays.
 *
 * The result of `Execute` distinguishes numbers from texts, but not the two kinds of text, so only values are compared.
 * Lines for the set run on a virtual TV; elsewhere they are skipped and listed.
 */

const utf8 = new TextEncoder()

const letters = {n: '\n', r: '\r', t: '\t'}

/** Decodes the text between `$'` and `'`. Bytes that are not UTF-8 become U+FFFD. */
function unescaped(text) {
  const escape = /\\(?:x([0-9A-Fa-f]{2})|([0-3][0-7]{2})|([^]))|([^\\]+)/g
  const bytes = [...text.matchAll(escape)].flatMap(([, hexDigits, octalDigits, letter, plain]) =>
    hexDigits ? parseInt(hexDigits, 16) : octalDigits ? parseInt(octalDigits, 8)
      : [...utf8.encode(plain ?? letters[letter] ?? letter)])
  return new TextDecoder('utf-8', {ignoreBOM: true}).decode(Uint8Array.from(bytes))
}

/**
 * Splits a line into words as the shell does; undefined when a quote is open at its end, nothing follows a backslash, or
 * `$'...'` has an unknown escape.
 */
export function splitWords(line) {
  const words = []
  const escaped = String.raw`\$'((?:\\(?:[nrt'"\\]|x[0-9A-Fa-f]{2}|[0-3][0-7]{2})|[^'\\])*)'`
  const double = String.raw`"((?:\\["\\$\x60]|[^"\\]|\\(?!["\\$\x60]))*)"`
  const piece = String.raw`${escaped}|'([^']*)'|${double}|\\([^])|((?:\$(?!')|[^ \t'"\\$])+)`
  const word = new RegExp(`[ \\t]*((?:${piece})+)`, 'y')
  const end = line.replace(/(?<!\\)[ \t]+$/, '').length
  while (word.lastIndex < end) {
    const found = word.exec(line)
    if (!found) return undefined
    words.push([...found[1].matchAll(new RegExp(piece, 'g'))].map(([, special, single, quoted, kept, plain]) =>
      special !== undefined ? unescaped(special)
        : single ?? quoted?.replace(/\\(["\\$`])/g, '$1') ?? kept ?? plain).join(''))
  }
  return words
}

/** Reads a transcript into its opening remarks and its steps {line, input, expected, remarks}. */
export function readTranscript(text, name = 'transcript') {
  const lines = text.replace(/^\uFEFF/, '').split('\n').map(line => line.replace(/\r+$/, ''))
  if (lines.at(-1) === '') lines.pop()
  const opening = []
  const steps = []
  lines.forEach((line, at) => {
    const step = steps.at(-1)
    const fail = reason => { throw new SyntaxError(`${name}:${at + 1}: ${reason}`) }
    if (line.startsWith('>')) {
      steps.push({line: at + 1, input: line, expected: [], remarks: []})
    } else if (line.startsWith('#') || /^[ \t]*$/.test(line)) {
      (step?.remarks ?? opening).push(line)
    } else {
      if (!step) fail("output before the first '>' line")
      if (step.remarks.length > 0) fail("output must directly follow its '>' line")
      step.expected.push(line)
    }
  })
  if (steps.length === 0) throw new SyntaxError(`${name}: there is no '>' line to run`)
  return {opening, steps}
}

const hex = (number, width) => number.toString(16).toUpperCase().padStart(width, '0')

const loneSurrogates = /[\uD800-\uDBFF](?![\uDC00-\uDFFF])|(?<![\uD800-\uDBFF])[\uDC00-\uDFFF]/g

/** Replaces String.prototype.toWellFormed, which Node 18 lacks. */
const wellFormed = text => text.replace(loneSurrogates, '\uFFFD')

/** A text for a line, with unprintable characters as `\xNN`. */
function printable(text) {
  return wellFormed(text).replace(/\\x/g, '\\x5Cx')
    .replace(/[\0-\x1F\x7F-\x9F]/g, letter => Array.from(utf8.encode(letter), byte => `\\x${hex(byte, 2)}`).join(''))
}

/** Reverses `printable`. Bytes that are not UTF-8 become U+FFFD, as in results of `Execute`. */
function unprintable(line) {
  return line.replace(/(?:\\x[0-9A-F]{2})+/g, bytes =>
    new TextDecoder('utf-8', {ignoreBOM: true}).decode(Uint8Array.from(bytes.match(/[0-9A-F]{2}/g), byte => parseInt(byte, 16))))
}

function showAscii(text) {
  if (text === '') return ['ascii']
  if (!/[\0-\x1F\x7F-\x9F]/.test(text) && text !== '|' && !text.endsWith(' ')) return [`ascii ${text}`]
  const lines = text.split('\n')
    .map(line => printable(line.replace(/\\$/, '')) + (line.endsWith('\\') ? '\\x5C' : ''))
    .map(line => line === '' ? '|' : `| ${line}`)
  const last = lines.pop()
  return ['ascii |', ...lines, ...last === '|' ? [] : [`${last}\\`]]
}

function showUnicode(text) {
  const shown = text.replace(/["\\]/g, '\\$&')
    .replace(/[\0-\x1F\x7F-\x9F]|[\uD800-\uDBFF](?![\uDC00-\uDFFF])|(?<![\uD800-\uDBFF])[\uDC00-\uDFFF]/g,
      unit => `\\u${hex(unit.charCodeAt(0), 4)}`)
  return [`unicode "${shown}"`]
}

/** A result of `Execute` as the shell prints it. @param like  the expected reply, whose kind of text is assumed */
function show(value, like) {
  if (value === undefined || value === null) return [like.isRefused ? 'refused' : 'empty']
  const text = String(value)
  const shown = typeof value === 'number' ? [`int ${value}`] : like.kind === 'unicode' ? showUnicode(text) : showAscii(text)
  return like.isRefused ? [`refused ${shown[0]}`, ...shown.slice(1)] : shown
}

/** The lines of a reply in a transcript. @param reply  the result of `window.execute`: {accepted, kind, value} */
export function replyLines({accepted, kind, value, units, bytes}) {
  if (kind === 'empty') return [accepted ? 'empty' : 'refused']
  const shown = kind === 'int' ? [`int ${value}`]
    : kind === 'unicode' ? showUnicode(units ? units.map(unit => String.fromCharCode(unit)).join('') : value)
      : bytes === undefined ? showAscii(value) : showBytes(bytes)
  return accepted ? shown : [`refused ${shown[0]}`, ...shown.slice(1)]
}

/** Shows a text that is not UTF-8. @param bytes  in base64 */
function showBytes(bytes) {
  const all = Array.from(atob(bytes), byte => byte.charCodeAt(0))
  const lines = [[]]
  for (const byte of all) byte === 10 ? lines.push([]) : lines.at(-1).push(byte)
  const ended = all.at(-1) === 10
  if (ended) lines.pop()
  return ['ascii |', ...lines.map((line, at) => {
    const isLast = at === lines.length - 1 && !ended
    return (line.length > 0 ? '| ' : '|') + lineOfBytes(line) + (isLast ? '\\' : '')
  })]
}

/** A line of bytes, with unreadable ones as `\xNN`. */
function lineOfBytes(bytes) {
  let line = ''
  for (let at = 0; at < bytes.length;) {
    const length = [1, 2, 3, 4].find(count => isCharacter(bytes.slice(at, at + count)))
    line += length ? printable(new TextDecoder('utf-8', {ignoreBOM: true}).decode(Uint8Array.from(bytes.slice(at, at + length)))) : `\\x${hex(bytes[at], 2)}`
    at += length ?? 1
  }
  return line.endsWith('\\') ? `${line.slice(0, -1)}\\x5C` : line
}

function isCharacter(bytes) {
  try {
    return [...new TextDecoder('utf-8', {fatal: true, ignoreBOM: true}).decode(Uint8Array.from(bytes))].length === 1
  } catch {
    return false
  }
}

/** The number of lines of the reply after an input; calls and log messages may follow. */
function replyLength(lines) {
  if (!/^(refused )?ascii \|$/.test(lines[0] ?? '')) return Math.min(1, lines.length)
  const end = lines.findIndex((line, at) => at > 0 && !/^\|( |$)/.test(line))
  return end < 0 ? lines.length : end
}

function readUnicode(quoted) {
  return quoted.slice(1, -1).replace(/\\u([0-9A-Fa-f]{4})|\\([^])/g, (_, digits, letter) =>
    digits ? String.fromCharCode(parseInt(digits, 16)) : letter)
}

/** Parses a reply of a transcript: {isRefused, kind, value}, without kind if it is not a reply of the plug-in. */
function readReply(lines) {
  const isRefused = /^refused( |$)/.test(lines[0] ?? '')
  const first = (lines[0] ?? '').replace(/^refused ?/, '')
  const reply = (kind, value) => ({isRefused, kind, value})
  if (first === 'empty' || first === '') return reply(isRefused || first === 'empty' ? 'none' : undefined)
  if (/^int -?\d+$/.test(first)) return reply('int', Number(first.slice(4)))
  if (/^unicode ".*"$/.test(first)) return reply('unicode', readUnicode(first.slice(8)))
  if (first === 'ascii') return reply('ascii', '')
  if (first === 'ascii |') {
    const text = lines.slice(1).map(line => line.slice(2)).join('\n')
    return reply('ascii', text.endsWith('\\') ? unprintable(text.slice(0, -1)) : `${unprintable(text)}\n`)
  }
  return first.startsWith('ascii ') ? reply('ascii', first.slice(6)) : reply(undefined)
}

function isSame(value, reply) {
  if (reply.kind === 'none') return value === undefined || value === null || (!reply.isRefused && value === '')
  return reply.kind !== undefined && value === reply.value
}

/** The line that an input runs. */
const lineOf = input => input.replace(/^[> \t]+/, '')

/** Runs the steps one by one, and remembers what earlier steps switched on. */
class Player {
  #plugin
  #isVirtual
  #tells = {'.trace': false, '.log': false}  // true while calls and log messages follow replies

  constructor(plugin) {
    this.#plugin = plugin
    this.#isVirtual = plugin.isVirtual === true && typeof plugin.run === 'function'
  }

  /** Runs a step. @param next  the following step @return {printed} as lines, or {skipped} with the reason */
  async play({input, expected}, next) {
    const line = lineOf(input)
    if (line === '') return {printed: []}
    const words = splitWords(line)
    if (words?.[0] in this.#tells) this.#tells[words[0]] = words[1] === 'on'
    const why = this.#whyNotExecute(line, words)
    if (why && !this.#isVirtual) return {skipped: why}
    const isTold = this.#tells['.trace'] || this.#tells['.log'] || lineOf(next?.input ?? '') === '.why'
    if (why || (this.#isVirtual && isTold)) return {printed: await this.run(line)}
    return this.#execute(words, expected)
  }

  async run(line) {
    const lines = await this.#plugin.run(line)
    return Array.isArray(lines) ? lines : lines.lines
  }

  /** Faults that were never hit, as the virtual TV lists them. */
  async idleFaults() {
    return this.#isVirtual ? (await this.run('.fault')).filter(line => line.endsWith('(hits: 0)')) : []
  }

  #whyNotExecute(line, words) {
    if (line.startsWith('.')) return 'it speaks to the virtual TV'
    if (line.startsWith('+')) return 'Execute takes no list of parameters'
    if (!words) return 'a quote is open, or nothing follows a backslash'
    if (words.length > 5) return 'Execute takes at most four parameters'
    return undefined
  }

  async #execute([name, ...parameters], expected) {
    const reply = readReply(expected.slice(0, replyLength(expected)))
    let value
    try {
      value = await this.#plugin.Execute(name, ...parameters)
    } catch (error) {
      return {printed: [`error: ${printable(String(error?.message ?? error))}`]}
    }
    return {printed: isSame(value, reply) ? expected.slice(0, replyLength(expected)) : show(value, reply)}
  }
}

/** The minimal line-by-line difference of two texts: [kind, line]. */
function compare(before, after) {
  const width = after.length + 1
  const common = new Uint32Array((before.length + 1) * width)
  for (let row = before.length - 1; row >= 0; --row) {
    for (let column = after.length - 1; column >= 0; --column) {
      common[row * width + column] = before[row] === after[column] ? common[(row + 1) * width + column + 1] + 1
        : Math.max(common[(row + 1) * width + column], common[row * width + column + 1])
    }
  }
  const lines = []
  let row = 0
  let column = 0
  while (row < before.length || column < after.length) {
    const isSameLine = row < before.length && column < after.length && before[row] === after[column]
    const isRemoved = column === after.length ||
      (row < before.length && common[(row + 1) * width + column] >= common[row * width + column + 1])
    if (isSameLine) {
      lines.push([' ', before[row++]])
      ++column
    } else if (isRemoved) {
      lines.push(['-', before[row++]])
    } else {
      lines.push(['+', after[column++]])
    }
  }
  return lines
}

/** A unified diff with three lines of context; empty when nothing differs. */
function unified(lines, before, after) {
  const changes = lines.flatMap(([kind], at) => kind === ' ' ? [] : [at])
  if (changes.length === 0) return ''
  const hunks = []
  for (const at of changes) {
    const [first, end] = [Math.max(0, at - 3), Math.min(lines.length, at + 4)]
    if (hunks.length > 0 && hunks.at(-1).end >= first) hunks.at(-1).end = end
    else hunks.push({first, end})
  }
  const range = ({first, end}, other) => {
    const count = (from, to) => lines.slice(from, to).filter(([kind]) => kind !== other).length
    const length = count(first, end)
    return `${count(0, first) + (length > 0 ? 1 : 0)},${length}`
  }
  const shown = hunks.map(hunk => `@@ -${range(hunk, '+')} +${range(hunk, '-')} @@\n` +
    lines.slice(hunk.first, hunk.end).map(([kind, line]) => `${kind}${line}\n`).join(''))
  return `--- ${before}\n+++ ${after}\n${shown.join('')}`
}

/** The expected output of a step, without calls and log messages unless these were requested. */
function wanted(step, isComplete) {
  return isComplete ? step.expected : step.expected.slice(0, replyLength(step.expected))
}

/**
 * Runs a transcript, which expects a fresh set. After skipped lines, the set may be in another state than the
 * transcript expects.
 * @param plugin  has `Execute(name, p1, p2, p3, p4)`, which may be asynchronous
 * @param name  the transcript's name in the report
 * @return {name, passed, steps: [{line, input, expected, printed, passed, skipped, failure, seconds}], skipped, findings,
 * diff, junit}
 * @throws SyntaxError if the text is not a transcript
 */
export async function runTranscript(text, plugin, {name = 'transcript'} = {}) {
  const {opening, steps: read} = readTranscript(text, name)
  const player = new Player(plugin)
  const before = new Set(await player.idleFaults())
  const whole = opening.map(line => [' ', line])
  const steps = []
  for (const [at, step] of read.entries()) {
    const start = performance.now()
    const {printed = [], skipped} = await player.play(step, read[at + 1])
    const seconds = (performance.now() - start) / 1000
    const expected = wanted(step, plugin.isVirtual === true)
    const lines = skipped ? step.expected.map(line => [' ', line]) : compare(expected, printed)
    const failure = unified(lines, 'expected', 'printed')
    const {line, input} = step
    steps.push({line, input, expected, printed, skipped, passed: failure === '', failure, seconds})
    whole.push([' ', input], ...lines, ...step.remarks.map(remark => [' ', remark]))
  }
  const isRecorded = read[0].input === '> .recorded'
  const idle = isRecorded ? [] : (await player.idleFaults()).filter(line => !before.has(line))
  const findings = idle.map(line => `a fault was never hit: ${line}`)
  const result = {
    name,
    passed: findings.length === 0 && steps.every(step => step.passed),
    steps,
    skipped: steps.filter(step => step.skipped).map(({line, input, skipped}) => ({line, input, reason: skipped})),
    findings,
    diff: unified(whole, name, `${name} (printed now)`) + findings.map(finding => `${name}: ${finding}\n`).join(''),
  }
  return {...result, junit: junitReport([result])}
}

const escapes = {'&': '&amp;', '<': '&lt;', '>': '&gt;', '"': '&quot;', '\n': '&#10;', '\t': '&#9;'}

/** Escapes a text for XML, replacing characters that XML can't hold. */
function escaped(text) {
  return wellFormed(text).replace(/[&<>"\n\t]/g, letter => escapes[letter])
    .replace(/[\0-\x1F]/g, printable).replace(/[\uFFFE\uFFFF]/g, '?')
}

const attributes = values => Object.entries(values).map(([key, value]) => ` ${key}="${escaped(String(value))}"`).join('')

function junitCase(name, {line, input, seconds, skipped, passed, failure}) {
  const head = `    <testcase${attributes({classname: name, name: `${line}: ${input}`, time: seconds.toFixed(6)})}`
  if (skipped) return `${head}>\n      <skipped${attributes({message: skipped})}/>\n    </testcase>\n`
  if (passed) return `${head}/>\n`
  return `${head}>\n      <failure${attributes({message: `${name}:${line}: not as expected`})}>${escaped(failure)}` +
    '</failure>\n    </testcase>\n'
}

/** The JUnit report of several results of `runTranscript`. */
export function junitReport(results) {
  const totals = all => ({
    tests: all.length,
    failures: all.filter(step => !step.passed).length,
    errors: 0,
    skipped: all.filter(step => step.skipped).length,
    time: all.reduce((sum, step) => sum + step.seconds, 0).toFixed(6),
  })
  const withFindings = ({steps, findings}) => [...steps, ...findings.map(finding => (
    {line: steps.at(-1).line, input: 'faults', seconds: 0, passed: false, failure: finding}))]
  const suites = results.map(result => [result.name, withFindings(result)])
  const shown = suites.map(([name, steps]) => `  <testsuite${attributes({name, ...totals(steps)})}>\n` +
    `${steps.map(step => junitCase(name, step)).join('')}  </testsuite>\n`)
  return `<?xml version="1.0" encoding="UTF-8"?>\n<testsuites${attributes(totals(suites.flatMap(([, steps]) => steps)))}>\n` +
    `${shown.join('')}</testsuites>\n`
}
