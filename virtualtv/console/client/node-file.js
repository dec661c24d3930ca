// SPDX-License-Identifier: MIT
/*
 * Reads the files of this package in Node, where fetch does not.
 */
import {readFile} from 'node:fs/promises'

export const read = url => readFile(url)
