// SPDX-License-Identifier: MIT
// The part of the client's load.js that the site uses.
export function load(): Promise<WebAssembly.Module>
