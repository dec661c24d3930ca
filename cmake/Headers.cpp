// Stands for precompiled headers, which want a source.
