// SPDX-License-Identifier: MIT
/*
 * Generates commands.d.ts from the server's OpenRPC document:
 *
 *   emp-window serve --fresh &  curl -s http://127.0.0.1:8090/openrpc.json | node typings.mjs > commands.d.ts
 *
 * With --check it only compares: the status is 1 if the file is not up to date.
 */
import {readFileSync} from 'node:fs'
import {pathToFileURL} from 'node:url'

const head = `// SPDX-License-Identifier: MIT
// Made by typings.mjs from the server's OpenRPC document. Do not edit.

/** What a command takes. 64-bit ids go as texts or bigints; undefined stands for the empty text. */
export type Parameter = string | number | bigint | boolean | undefined

/** The plug-in's commands as an app on the set calls them. Failure codes are values: negative numbers, mostly. */
export interface Commands {
`

/** Wraps a text to lines of a comment, at most 118 characters wide. */
function comment(text) {
  const lines = []
  for (const paragraph of text) {
    let line = ''
    for (const word of paragraph.replaceAll('*/', '* /').split(/\s+/)) {
      if (line !== '' && line.length + word.length > 112) {
        lines.push(line)
        line = ''
      }
      line += (line === '' ? '' : ' ') + word
    }
    lines.push(line)
  }
  if (lines.length === 1) return `  /** ${lines[0]} */\n`
  return `  /**\n${lines.map(line => `   * ${line}\n`).join('')}   */\n`
}

/** Kinds of reply that a result schema allows. */
function kindsOf(schema = {}) {
  const choices = [schema, ...schema.oneOf ?? [], ...schema.anyOf ?? []]
  return choices.flatMap(({properties}) => properties?.kind?.enum ?? properties?.kind?.const ?? [])
}

/** The type of a result: a number, or a text, in which case a number is a failure code. */
function typeOf(result) {
  const kinds = kindsOf(result?.schema)
  return kinds.length > 0 && kinds.every(kind => kind === 'int' || kind === 'empty') ? 'number' : 'string | number'
}

function command({name, summary, description, params, result}) {
  const about = [[summary, description].filter(Boolean).join(' ')]
  for (const param of params) {
    const help = param.description ?? param.summary ?? param.schema?.description
    if (help) about.push(`@param ${param.name} ${help}`)
  }
  if (result?.schema?.description) about.push(`@returns ${result.schema.description}`)
  const parameters = params.map(param => `${param.name}?: Parameter`).join(', ')
  return `${comment(about)}  ${name.slice('window.'.length)}(${parameters}): ${typeOf(result)}\n`
}

function literal(value) {
  return typeof value === 'string' ? `'${value}'` : String(value)
}

/** A schema as a type. `indent` is the indentation of its first line. */
function typeOfSchema(schema, indent = '') {
  if (schema.$ref) return schema.$ref.split('/').at(-1)
  if (schema.anyOf) return schema.anyOf.map(choice => typeOfSchema(choice, indent)).join(' | ')
  if ('const' in schema) return literal(schema.const)
  if (schema.enum) return schema.enum.map(literal).join(' | ')
  if (Array.isArray(schema.type)) return schema.type.map(type => typeOfSchema({...schema, type})).join(' | ')
  if (schema.type === 'array') return `${typeOfSchema(schema.items, indent)}[]`.replace(/^(.* \| .*)\[\]$/, '($1)[]')
  if (schema.type !== 'object') return schema.type === 'integer' ? 'number' : schema.type
  const members = Object.entries(schema.properties).map(([name, member]) =>
    `${member.description ? `${indent}  /** ${member.description} */\n` : ''}${indent}  ${name}` +
    `${schema.required.includes(name) ? '' : '?'}: ${typeOfSchema(member, `${indent}  `)}\n`)
  return `{\n${members.join('')}${indent}}`
}

const ofTopic = 'event.'

/** The named types of results and events. */
function documents(schemas) {
  return Object.entries(schemas).filter(([name]) => !name.startsWith(ofTopic))
    .map(([name, schema]) => `\n/** ${schema.description} */\nexport interface ${name} ${typeOfSchema(schema)}\n`).join('')
}

/** The events of each topic. */
function events(schemas) {
  const topics = Object.entries(schemas).filter(([name]) => name.startsWith(ofTopic)).map(([name, schema]) =>
    `  /** ${schema.description} */\n  ${name.slice(ofTopic.length)}: ${typeOfSchema(schema)}\n`)
  if (topics.length === 0) return ''
  return `\n/** The events of each topic. */\nexport interface Events {\n${topics.join('')}}\n`
}

/** The text of commands.d.ts. */
export function typings(document) {
  const commands = document.methods.filter(method => /^window\.[A-Z]/.test(method.name))
  if (commands.length === 0) throw new Error('no command in the document: is it the OpenRPC document of emp-window?')
  const schemas = document.components?.schemas ?? {}
  return `${head}${commands.map(command).join('\n')}}\n${documents(schemas)}${events(schemas)}`
}

if (process.argv[1] && import.meta.url === pathToFileURL(process.argv[1]).href) {
  const made = typings(JSON.parse(readFileSync(0, 'utf8')))
  if (process.argv[2] !== '--check') {
    process.stdout.write(made)
  } else if (made !== readFileSync(new URL('./commands.d.ts', import.meta.url), 'utf8')) {
    console.error('commands.d.ts is not what typings.mjs makes of this document')
    process.exitCode = 1
  }
}
