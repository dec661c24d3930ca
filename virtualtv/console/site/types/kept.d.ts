// SPDX-License-Identifier: MIT
// The part of the client's kept.js that the site uses.
export function keepSet(key: string, make: (snapshot: any, unusable: (cause: any) => Error) => any, patience?: number):
  Promise<{set: any, keeper: {session: string, close(): Promise<void>}}>
export function forget(key: string): Promise<void>
