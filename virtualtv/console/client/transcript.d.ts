// SPDX-License-Identifier: MIT
/** Transcripts on anything that has the plug-in's `Execute`: a virtual TV, an app's own object, a real set's. */

/** The result of `window.execute`. */
export interface Reply {
  accepted: boolean
  kind: 'int' | 'ascii' | 'unicode' | 'empty'
  value?: number | string
  /** UTF-16 units, if the value can't hold them. */
  units?: number[]
  /** Bytes in base64, if they are not UTF-8. */
  bytes?: string
}

/** Splits a line into words as the shell does; undefined for invalid lines, such as an open quote. */
export function splitWords(line: string): string[] | undefined

/** A reply as the lines of a transcript. */
export function replyLines(reply: Reply): string[]

export interface TranscriptPlugin {
  /** Number or text; may be a promise. */
  Execute(name: string, ...parameters: string[]): unknown
  /** True on a virtual TV; `run` then executes the lines for the set. */
  readonly isVirtual?: boolean
  run?(line: string): string[] | {lines: string[]} | Promise<string[] | {lines: string[]}>
}

export interface TranscriptOptions {
  /** Name in the report; 'transcript' by default. */
  name?: string
}

export interface TranscriptStep {
  /** Line number of the input, counted from 1. */
  line: number
  input: string
  expected: string[]
  printed: string[]
  /** Why the step was not run. */
  skipped?: string
  passed: boolean
  /** A diff; empty if nothing differs. */
  failure: string
  seconds: number
}

export interface TranscriptResult {
  name: string
  passed: boolean
  steps: TranscriptStep[]
  skipped: {line: number, input: string, reason: string}[]
  /** Other reasons for failure: faults that were never hit. */
  findings: string[]
  /** The unified diff of the whole transcript, and the findings, one per line; empty if everything passed. */
  diff: string
  /** A report in JUnit's XML. */
  junit: string
}

export function runTranscript(text: string, plugin: TranscriptPlugin, options?: TranscriptOptions): Promise<TranscriptResult>

/** One report of several results. */
export function junitReport(results: TranscriptResult[]): string
