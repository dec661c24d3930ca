// SPDX-License-Identifier: MIT
// The page about the figures.
import {tableOf} from './table.js'

/** @param machine  the machine that was measured, in words */
export function pageOf(rows, machine) {
  return `# What a TV in memory costs

The set as WebAssembly, in Node and in a browser. \`tools/wasm --measure\` measures and prints the table; its status is 1 if a
target is missed. \`tools/wasm --measure --write\` writes this page.

Measured on ${new Date().toISOString().slice(0, 10)}: ${machine}.

${tableOf(rows).join('\n')}

## What the rows count

- **Starts.** The time from the call of \`createTv\` to the reply of \`GetTVMode\`, in a process or page that has not
  created a TV before. It includes loading and compiling the module. The minimum of twelve runs counts; the median shows
  how busy the machine was. Processor time is that of all threads of the process. A page comes from a server on the same
  machine, in a running browser with an empty cache.
- **Posts.** The same JSON-RPC message is posted to the module from JavaScript, and to the same dispatcher in a native
  process. Both are measured in turns; the lowest average of a run of 20 ms counts.
- **TVs.** Memory is the resident memory of the process, after 200 TVs and after 800 more. Each TV was created, called
  once and closed.

## What brought them there

- **Starts.** The package contains the module as it is after its start: its memory has the set, with the services in the
  database and the tables of methods read. Creating these took most of the start, and half of that was compiling the
  functions for it, since a browser compiles a function at its first call. The free memory of the heap and the stack are
  cleared, so that the memory compresses well.
- **Sizes.** SQLite is built without features that no statement uses, and without its own pool for small allocations,
  whose old content would remain in memory. Everything is compiled for size, except the rooms where a long list spends
  its time. The library that parses the program's arguments is not in the module.
- **Posts.** Small functions are inlined before the compiler optimises their results. When compiling for size, emcc
  inlines at the end: that removes the calls, but not the code that they make redundant.
`
}
