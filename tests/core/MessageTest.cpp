// Messages and parameters: binding, copying, comparing, the built-in table.
#include "Toolkit.h"

#include "logging/OvxI18Msg.h"
#include "logging/OvxPrintf.h"

#include <climits>

using namespace olvex::test;

namespace {

class Messages : public OpenToolkit {};

OvxParm intParm(int value)
{
    return {OVX_PARM_INT, {.integer = value}};
}
OvxParm stringParm(const char *value)
{
    return {OVX_PARM_STRING, {.string = const_cast<char *>(value)}};
}

struct ParmListOwner {
    ParmList *list = OvxAllocParmList();
    ParmListOwner(std::initializer_list<OvxParm> parms)
    {
        for (const OvxParm &parm : parms)
            OvxParmListAppend(list, &parm);
    }
    ~ParmListOwner() { OvxFreeParmList(list); }
};

TEST_F(Messages, PrintPositionally)
{
    const ParmListOwner two{intParm(5), stringParm("x")};
    const ParmListOwner other{{600, {.integer = 1}}, {OVX_PARM_DOUBLE, {.doubleFloating = 2}}},
        none{};
    const ParmListOwner absent{stringParm("a"), stringParm(nullptr)};
    const struct {
        const char *format;
        const ParmListOwner &parms;
        const char *text;
    } cases[] = {
        {"%2$s then %1$d", two, "x then 5"},
        {"%d and %s", two, "5 and x"},
        {"%1$s-%2$s-", absent, "a-"},
        {"%1$s and %3$s", two, "(none)"}, // too few parameters
        {"%s", two, "(none)"},            // an int cannot serve: nothing stands before it
        {"at %s end", two, "at "},        // what stands before it stays
        {"%2$s", two, "x"}, // slots are filled by position: a gap in the format is none here
        {"100%", none, "(none)"},
        {"%1$d", other, "0"}, // of no type that is known: nothing but what the format makes of it
        {"", two, "(none)"},
    };
    for (const auto &entry : cases)
        EXPECT_EQ(take(OvxAprintf(entry.format, entry.parms.list)), entry.text) << entry.format;
    EXPECT_EQ(OvxAprintf(nullptr, two.list), nullptr);
}

TEST_F(Messages, BindToTheirTextOrItsRawForm)
{
    OvxI18Msg *msg = OvxAllocI18Msg(nullptr, 0, 0, "Value %1$d");
    EXPECT_EQ(take(OvxBindI18Msg(msg)), "Value %1$d");
    OvxAddI18MsgParmInt(msg, 7);
    EXPECT_EQ(take(OvxBindI18Msg(msg)), "Value 7");
    OvxSetI18MsgTxt(msg, "%1$s");
    EXPECT_EQ(take(OvxBindI18Msg(msg)), "%1$s"); // nothing printed: the text as it stands
    OvxSetI18MsgTxt(msg, nullptr);
    EXPECT_EQ(OvxBindI18Msg(msg), nullptr);
    OvxSetI18MsgCat(msg, "ovxmsg");
    EXPECT_EQ(OvxBindI18Msg(msg), nullptr);
    OvxFreeI18Msg(msg);
}

// A slot that an unknown type leaves alone holds nothing of the message before it, whichever way
// the format is printed, and whether it was printed before.
TEST_F(Messages, AParameterOfAnUnknownTypeHasNoValue)
{
    const std::pair<const char *, const char *> cases[] = {
        {"[%1$s]", "["},   {"[%1$5s]", "["},      {"[%1$d]", "[0]"},    {"[%1$3d]", "[  0]"},
        {"[%1$x]", "[0]"}, {"[%1$.1f]", "[0.0]"}, {"[%1$*1$d]", "[0]"}, {"[%1$s|%1$d]", "["},
        {"[%1$c]", "["},   {"[%1$d|%1$5s]", "["},
    };
    OvxParm unknown = {600, {}};
    unknown.value.longInteger = 0x1234567;
    const ParmListOwner list{unknown};
    for (const auto &[format, text] : cases) {
        for (int round = 0; round < 2; ++round) {
            OvxI18Msg *before = OvxAllocI18Msg(nullptr, 0, 0, format);
            OvxAddI18MsgParmString(before, std::string(2000, 'x').c_str());
            take(OvxBindI18Msg(before));
            OvxFreeI18Msg(before);
            OvxI18Msg *msg = OvxAllocI18Msg(nullptr, 0, 0, format);
            OvxParmListAppend(ovxGetI18MsgParmList(msg), &unknown);
            EXPECT_EQ(take(OvxBindI18Msg(msg)), text) << format;
            OvxFreeI18Msg(msg);
        }
        EXPECT_STREQ(take(OvxAprintf(format, list.list)).c_str(), text) << format;
    }
    EXPECT_EQ(ovxParmToUTF8Str("%s", &unknown), nullptr);
    OvxParm *copy = OvxCopyParm(&unknown);
    EXPECT_EQ(copy->type, 600);
    EXPECT_EQ(copy->value.longInteger, 0);
    OvxFreeParm(copy);
}

TEST_F(Messages, CopiesStandAlone)
{
    OvxI18Msg *msg = OvxAllocI18Msg("cat", 1, 2, "%1$s %2$ld %3$.1f %4$c");
    OvxAddI18MsgParmString(msg, "text");
    OvxAddI18MsgParmLong(msg, LONG_MAX);
    OvxAddI18MsgParmFloat(msg, 2.5f);
    OvxAddI18MsgParmChar(msg, 'c');
    OvxI18Msg *copy = OvxCopyI18Msg(msg);
    OvxFreeI18Msg(msg);
    EXPECT_EQ(take(OvxBindI18Msg(copy)), "text " + std::to_string(LONG_MAX) + " 2.5 c");
    OvxFreeI18Msg(copy);
}

TEST_F(Messages, ParametersCompareByTypeAndValue)
{
    const OvxParm least{OVX_PARM_LONG, {.longInteger = LONG_MIN}};
    const struct {
        OvxParm a;
        OvxParm b;
        bool equal;
    } cases[] = {
        {intParm(1), intParm(1), true},
        {intParm(1), intParm(2), false},
        {intParm(0), least, false},
        {stringParm("a"), stringParm("a"), true},
        {stringParm("a"), stringParm("A"), false},
        {{OVX_PARM_FLOAT, {.floating = 1}}, {OVX_PARM_FLOAT, {.floating = 2}}, false},
        {{600, {.integer = 1}}, {600, {.integer = 1}}, false},
    };
    for (const auto &entry : cases)
        EXPECT_EQ(OvxCmpParms(&entry.a, &entry.b), entry.equal) << entry.a.type;
}

TEST_F(Messages, OneParameterPrintsByItsType)
{
    const std::pair<OvxParm, const char *> cases[] = {
        {intParm(42), "42"},
        {stringParm("abc"), "abc"},
        {{OVX_PARM_LONG, {.longInteger = -7}}, "-7"},
        {{OVX_PARM_DOUBLE, {.doubleFloating = 2.5}}, "2.500000"},
        {{OVX_PARM_FLOAT, {.floating = 0.5f}}, "0.500000"},
        {{OVX_PARM_BOOL, {.boolean = true}}, "\1"},
        {{OVX_PARM_CHAR, {.character = 'c'}}, "c"},
        {{600, {.integer = 1}}, "(none)"},
    };
    for (const auto &[parm, text] : cases)
        EXPECT_EQ(take(ovxParmToUTF8Str(nullptr, &parm)), text) << parm.type;
}

} // namespace
