// Holds the table of functions of the base of what has a text.
#include <olvex/trace/base/Object.h>

Object::~Object() = default;
