// What the functions on the path of one event are marked with. A processor comes out of the kernel
// with no memory of where the functions on the stack go on, and each of them that it then returns
// to costs it a pause: so there should be few of them between a logging call and its last system
// call.
#pragma once

// Makes a function one with its caller.
#define OVX_ALWAYS_INLINE [[gnu::always_inline]] inline

// Puts a function beside the others of the path, in few pages.
#define OVX_HOT [[gnu::hot]]

// The same, and makes one with it whatever it calls in its file.
#define OVX_FLATTEN [[gnu::hot, gnu::flatten]]
