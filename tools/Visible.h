// What a terminal gets to see. Texts that the command prints come from logs, configurations, names
// of files and arguments; any of them may hold what makes a terminal do things, or what makes a
// text look like another. Everything that prints such a text sends it through here, JSON included.
#pragma once

#include <string>
#include <string_view>

namespace tools {

// Whether a character shows as itself and does nothing else: no control (line end and tab are
// such), nothing that changes the direction of writing, nothing that has no width. Where the
// locale's code set is neither UTF-8 nor ASCII, a terminal takes UTF-8 for something else: only
// ASCII is visible.
bool isVisible(char32_t character);

enum class LineEnds { kSpelled, kKept };

// A text with what is not visible spelled out: \n, \t and \r; \x1b for a byte that is a control or
// no UTF-8; \u202e or \U000e0001 for other characters. `kKept` keeps line ends and tabs, for texts
// of several lines. Letters in a locale's own code set of one byte stay as they are.
std::string visible(std::string_view text, LineEnds lineEnds = LineEnds::kSpelled);

// Prints a line on standard error, made visible.
void complain(std::string_view line);

} // namespace tools
