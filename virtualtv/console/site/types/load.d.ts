// SPDX-License-Identifier: MIT
// What the site uses of the client's load.js.
export function load(): Promise<WebAssembly.Module>
