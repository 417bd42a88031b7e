// The C++ front of the toolkit, header only, for C++17 and later:
//
//     olvex::Toolkit toolkit("app.properties");
//     olvex::Logger log("app.log");
//     log.warn("Disk %1$s is %2$d percent full", path, 93, olvex::prop("component", "storage"));
//
// It adds nothing to the C interface but types: parameter lists that cannot be wrong, handles that
// release what they hold, the place of each call, and handlers, filters and formatters as classes.
// The macros OVX_LOG_INFO and so on evaluate no argument when the logger does not take the level,
// and check the text against the arguments in C++17 too. docs/cpp.md tells more.
#pragma once

#include <olvex/LogMacros.h>
#include <olvex/front/Classes.hpp>
#include <olvex/front/Logger.hpp>
#include <olvex/olvex.h>
