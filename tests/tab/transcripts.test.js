// SPDX-License-Identifier: MIT
// All transcripts of the tree on TVs in memory.
import {testTranscripts} from '../client/support/transcripts.js'
import {createTv} from './support/package.js'

await testTranscripts('in memory', createTv)
