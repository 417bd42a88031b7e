// What the functions on the path of one event are marked with.
#pragma once

// Makes a function that stands between a logging call and its last system call one with its caller.
// A processor comes out of the kernel with no memory of where the functions on the stack go on, and
// each of them that it then returns to costs it a pause.
#define OVX_ONE_FRAME [[gnu::always_inline]] inline

// Puts a function beside the others of the path, in few pages.
#define OVX_HOT [[gnu::hot]]
