// SPDX-License-Identifier: MIT
// The part of the client's memory.js that the site uses.
export function makeSet(module: WebAssembly.Module, options: {snapshot?: any}): any
