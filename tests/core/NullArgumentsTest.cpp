// Every public function, called with nothing at all: null pointers, zero numbers. None may crash,
// and each gives the neutral result unless it is named here with another one. The list of functions
// is made from the public headers when the build is configured.
#include "Toolkit.h"

#include <olvex/trace_c.h>

#include <cstring>
#include <string_view>
#include <type_traits>

namespace {

// Calls that mean something without arguments, or must not be made at all.
constexpr std::string_view kLeftOut[] = {
    "OvxOpenToolkit",
    "OvxLoadAdditionalProperties",
    "OvxCloseToolkit",
    "OvxVaAllocEvent", // a list must at least end
    "OvxConsoleHandlerFAllocVars",
    "OvxMsgIdFilterGetStringList", // a list of no words
    "ovx_createWrapper",           // opens the toolkit
};

// Calls whose result is another than the neutral one.
constexpr std::string_view kOtherResult[] = {
    "OvxGetEventLevel",
    "OvxGetLevelFromString",
    "OvxAreObjectsEqual",
    "OvxCmpParms",
    "OvxIsToolkitOpen",
    "OvxGetLoggerClasses",
    "OvxGetFilterClasses",
    "OvxGetHandlerClasses",
    "OvxGetFormatterClasses",
    "OvxLogMgrConfigNames",
    "OvxStrACat",
    "ovxI18PrintUTF8AsLocal",
    "OvxBasicFormatterFormatDate",
};

template <std::size_t Size>
bool isIn(const std::string_view (&names)[Size], std::string_view name)
{
    for (const std::string_view entry : names)
        if (entry == name) return true;
    return false;
}

// Makers of things take no arguments, or all of them may be missing.
bool isLeftOut(std::string_view name)
{
    return isIn(kLeftOut, name) || name.starts_with("OvxAlloc") ||
           name.starts_with("ovxIntlAlloc") || name.starts_with("ovx_getOlvLog");
}

// The services below the toolkit have results of their own.
bool hasOtherResult(std::string_view name)
{
    return isIn(kOtherResult, name) || name.starts_with("Bax") || name.starts_with("Cx") ||
           name.starts_with("ucv_") || name.starts_with("ovx_");
}

template <class Result>
void check(const char *name, const Result &result)
{
    if constexpr (std::is_arithmetic_v<Result> || std::is_pointer_v<Result>) {
        if (!hasOtherResult(name)) {
            EXPECT_EQ(result, Result{}) << name;
        }
    }
    if constexpr (std::is_same_v<Result, char *>) {
        if (!std::string_view(name).starts_with("Cx")) BaxMemoryFree(result);
    }
    if constexpr (std::is_same_v<Result, uc_ch_t *>) ucv_cs_free(result); // built-in ones stay
}

template <class Result, class... Arguments>
void callWithNothing(const char *name, Result (*function)(Arguments...))
{
    if (isLeftOut(name)) return;
    if constexpr (std::is_void_v<Result>)
        function(Arguments{}...);
    else
        check(name, function(Arguments{}...));
}

template <class Result, class... Arguments>
void callWithNothing(const char *name, Result (*function)(Arguments..., ...))
{
    if (isLeftOut(name)) return;
    if constexpr (std::is_void_v<Result>)
        function(Arguments{}..., 0);
    else
        check(name, function(Arguments{}..., 0));
}

class NullArguments : public olvex::test::OpenToolkit {};

TEST_F(NullArguments, GiveTheNeutralResultEverywhere)
{
#define PUBLIC_FUNCTION(name) callWithNothing(#name, name);
#include "PublicFunctions.inc"
#undef PUBLIC_FUNCTION
}

} // namespace
