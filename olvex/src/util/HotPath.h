// What the functions on the path of one event are marked with. A system call empties the
// processor's return stack, so each return from a function that was entered before the call is
// mispredicted: there should be few frames between a logging call and its last system call.
#pragma once

// Inlines the function into its callers.
#define OVX_ALWAYS_INLINE [[gnu::always_inline]] inline

// Puts a function beside the others of the path, in few pages.
#define OVX_HOT [[gnu::hot]]

// The same, and inlines into it whatever it calls in its file.
#define OVX_FLATTEN [[gnu::hot, gnu::flatten]]
