// Compiled for the precompiled headers of its target alone.
