// SPDX-License-Identifier: MIT
// The page about the figures.
import {tableOf} from './table.js'

/** @param machine  that measured, in words */
export function pageOf(rows, machine) {
  return `# What a TV in memory costs

The set as WebAssembly, in Node and in a browser. \`tools/wasm --measure\` measures and prints the table; its status is 1 if a
target is missed. \`tools/wasm --measure --write\` writes this page.

Measured on ${new Date().toISOString().slice(0, 10)}: ${machine}.

${tableOf(rows).join('\n')}

## What the rows count

- **Starts.** From the call of \`createTv\` to the reply of \`GetTVMode\`, in a process or page that has not made a TV before; it
  includes loading and compiling the module. The least of twelve; the median tells how busy the machine was. The time of the
  processor is that of all threads of the process. A page comes from a server on the same machine, in a browser that is open,
  with nothing in its cache.
- **Posts.** The same message of JSON-RPC, posted to the module from JavaScript and to the same dispatcher in a native process.
  Both are measured in turns; the least average of a run of 20 ms counts.
- **TVs.** Memory is what the process has resident, after 200 TVs and after 800 more; each was made, called once and closed.

## What brought them there

- **Starts.** The package holds the module as it is behind its start: its memory has the set, with the services in the database
  and the tables of methods read. Making those took a start's most time, and half of that was compiling the functions which do
  it, since a browser compiles a function when it is first called. The heap's free memory and the stack are cleared, so that
  the memory compresses.
- **Sizes.** SQLite is made without what no statement here uses, and without a store of its own for small pieces, which would
  keep what they held. All is compiled for size but the rooms in which a long list spends its time. The library that reads the
  program's arguments is not in the module.
- **Posts.** Small functions are inlined before the compiler looks at what they come to. Compiling for size, emcc leaves that to
  the end, where the calls go, but what could have been left out with them does not.
`
}
