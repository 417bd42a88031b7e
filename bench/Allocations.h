// Counts the memory allocations of this process, the library's included.
#pragma once

// How many times malloc, calloc or realloc was called so far, by all threads.
long allocationCount();
