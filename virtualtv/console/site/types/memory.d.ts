// SPDX-License-Identifier: MIT
// What the site uses of the client's memory.js.
export function makeSet(module: WebAssembly.Module, options: {snapshot?: any}): any
