// SPDX-License-Identifier: MIT
/** Transcripts on anything that has the plug-in's `Execute`: a virtual TV, an app's own object, a real set's. */

/** What `window.execute` answers. */
export interface Reply {
  accepted: boolean
  kind: 'int' | 'ascii' | 'unicode' | 'empty'
  value?: number | string
  /** UTF-16 units, where the value can't hold them. */
  units?: number[]
  /** Bytes in base64, where they are no UTF-8. */
  bytes?: string
}

/** Splits a line into words as the shell does; undefined where a quote is open, or the like. */
export function splitWords(line: string): string[] | undefined

/** A reply as a transcript shows it, line by line. */
export function replyLines(reply: Reply): string[]

export interface TranscriptPlugin {
  /** Number or text; may be a promise. */
  Execute(name: string, ...parameters: string[]): unknown
  /** On a virtual TV: true, and `run` takes the lines that speak to it. */
  readonly isVirtual?: boolean
  run?(line: string): string[] | {lines: string[]} | Promise<string[] | {lines: string[]}>
}

export interface TranscriptOptions {
  /** Stands in the report; 'transcript' by default. */
  name?: string
}

export interface TranscriptStep {
  /** Of the input in the text, counted from 1. */
  line: number
  input: string
  expected: string[]
  printed: string[]
  /** Why it was not run. */
  skipped?: string
  passed: boolean
  /** A diff; empty where nothing differs. */
  failure: string
  seconds: number
}

export interface TranscriptResult {
  name: string
  passed: boolean
  steps: TranscriptStep[]
  skipped: {line: number, input: string, reason: string}[]
  /** What else fails it: faults that no call has met. */
  findings: string[]
  /** Of the whole transcript, in the unified format, and the findings, a line each; empty where nothing is wrong. */
  diff: string
  /** A report in JUnit's XML. */
  junit: string
}

export function runTranscript(text: string, plugin: TranscriptPlugin, options?: TranscriptOptions): Promise<TranscriptResult>

/** One report of several results. */
export function junitReport(results: TranscriptResult[]): string
