// Stands for the precompiled headers, which want a source.
