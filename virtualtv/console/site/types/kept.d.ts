// SPDX-License-Identifier: MIT
// What the site uses of the client's kept.js.
export function keepSet(key: string, make: (snapshot: any, unusable: (cause: any) => Error) => any, patience?: number):
  Promise<{set: any, keeper: {session: string, close(): Promise<void>}}>
export function forget(key: string): Promise<void>
