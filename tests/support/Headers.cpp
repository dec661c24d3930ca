// Stands for the tests' precompiled headers, which want a source.
