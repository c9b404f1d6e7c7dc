#pragma once

// Flushes standard output at the end of a run. When what was printed could not all be written (a
// full disk, say), one line on standard error says so, naming the program:
// "optoquill: standard output: No space left on device". False then.
bool flushStandardOutput(const char* program);
