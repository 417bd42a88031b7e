// The tokenizer's delimiters as the toolkit uses them.
#pragma once

#include <olvex/Props.h>

// What separates the names of a list property.
inline constexpr char kNameDelimiters[] = " \t\r\n\f\v";
