// What is wrong with configurations, beyond the syntax of the files.
#pragma once

#include "config/Model.h"
#include "config/Report.h"

namespace tools::config {

// Classes, properties and values.
void checkSettings(const Model &model, Report &report);

// Names of other objects: where they lead, in which circles, and what none of them leads to.
void checkReferences(const Model &model, Report &report);

} // namespace tools::config
