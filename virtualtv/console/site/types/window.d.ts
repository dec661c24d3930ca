// SPDX-License-Identifier: MIT
// The client's window.js, of which the site uses what it leaves on the global object.
export {}
