// SPDX-License-Identifier: MIT
/*
 * Bundles modules into one classic script. Supports only the forms of import and export that these modules use, and
 * refuses any other.
 */

const importLine = /^import (?:\{([^}]*)\} from )?'([^']*)';?$/gm
const exportLine = /^export (?=(?:async )?(?:function\*?|class|const|let) (\w+))/gm

/**
 * A module as an expression that runs it and returns its exports.
 * @param valueOf  returns the expression for an imported module
 */
function expressionOf(path, text, valueOf) {
  const names = []
  const body = text
    .replace(importLine, (_, imported, from) => imported ? `const {${imported.replaceAll(' as ', ': ')}} = ${valueOf(from)}` : '')
    .replace(exportLine, (_, name) => {
      names.push(name)
      return ''
    })
  const left = /^(?!\s*(?:\*|\/\/))(?:\s*(?:import\b(?!\()|export\b(?!\()).*|.*\bimport\.meta\b.*)/m.exec(body)
  if (left) throw new Error(`${path}: this can't go into a script: ${left[0].trim()}`)
  return `(() => {\n${body}\nreturn {${names.join(', ')}}\n})()`
}

/** @param main  path of the module to run  @param texts  of all modules, by path  @return the script */
export function bundle(main, texts) {
  const places = new Map()  // names of the modules' export objects, by path
  const parts = []
  const add = path => {
    if (places.has(path)) return
    const text = texts[path]
    if (text === undefined) throw new Error(`${path} is imported and not there`)
    places.set(path, `module${places.size}`)
    const paths = [...text.matchAll(importLine)].map(([, , from]) => from)
    for (const from of paths) add(from)
    parts.push(`const ${places.get(path)} = ${expressionOf(path, text, from => places.get(from))}`)
  }
  add(main)
  return `(() => {\n'use strict'\n${parts.join('\n')}\n})()\n`
}
