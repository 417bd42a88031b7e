// Where the library's descriptors are: a host may close all descriptors and open its own, or start
// without standard streams, and must then not find its output in a file of ours, nor we ours in
// its.
#pragma once

namespace olvex {

// Takes over a descriptor that was just opened, close-on-exec, and gives it a number above those of
// the standard streams. -1 with errno when there is none left; it is closed then. -1 stays -1.
int aboveStandard(int descriptor);

// The same for a descriptor that stays open: where there is room, it gets a number so high that
// what a host opens does not reach it, and below the 1024 that fit into the table of a process that
// has raised no limit.
int keepHigh(int descriptor);

} // namespace olvex
