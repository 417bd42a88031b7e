// For the functions that stand between a logging call and its last system call: OVX_ONE_FRAME makes
// them one with their caller. A processor comes out of the kernel with no memory of where the
// functions on the stack go on, and each of them that it then returns to costs it a pause.
#pragma once

#define OVX_ONE_FRAME [[gnu::always_inline]] inline
