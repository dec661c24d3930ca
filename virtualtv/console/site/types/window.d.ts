// SPDX-License-Identifier: MIT
// The client's window.js; the site uses its global objects.
export {}
