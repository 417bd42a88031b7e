/*
 * Lists of macro arguments, as <olvex/LogMacros.h> needs them in C: how many there are, and each
 * with what a typed parameter list wants of it. Not for programs.
 */
#ifndef OLVEX_FRONT_MACROLISTS_H
#define OLVEX_FRONT_MACROLISTS_H

/* clang-format off */

/* The number of arguments, at least one; for more than 60 the name of what is wrong. */
#define OVX_COUNT(...) OVX_COUNT_OF(__VA_ARGS__, TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, \
    TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, \
    TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, \
    TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, \
    TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, \
    TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, \
    TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, \
    TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, \
    TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, \
    TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, \
    TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, \
    TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, \
    TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, \
    TAKES_AT_MOST_59_PARAMETERS, TAKES_AT_MOST_59_PARAMETERS, 60, 59, 58, 57, 56, 55, 54, 53, \
    52, 51, 50, 49, 48, 47, 46, 45, 44, 43, 42, 41, 40, 39, 38, 37, 36, 35, 34, 33, 32, 31, 30, \
    29, 28, 27, 26, 25, 24, 23, 22, 21, 20, 19, 18, 17, 16, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, \
    5, 4, 3, 2, 1, ~)
#define OVX_COUNT_OF(a1, a2, a3, a4, a5, a6, a7, a8, a9, a10, a11, a12, a13, a14, a15, a16, a17, \
    a18, a19, a20, a21, a22, a23, a24, a25, a26, a27, a28, a29, a30, a31, a32, a33, a34, a35, \
    a36, a37, a38, a39, a40, a41, a42, a43, a44, a45, a46, a47, a48, a49, a50, a51, a52, a53, \
    a54, a55, a56, a57, a58, a59, a60, a61, a62, a63, a64, a65, a66, a67, a68, a69, a70, a71, \
    a72, a73, a74, a75, a76, a77, a78, a79, a80, a81, a82, a83, a84, a85, a86, a87, a88, a89, \
    a90, a91, a92, a93, a94, a95, a96, a97, a98, a99, a100, n, ...) n

/* OVX_LIST_<n>(x1, ..., end): OVX_ENTRY of each but the last of n arguments. */
#define OVX_LIST_1(end)
#define OVX_LIST_2(x, ...) OVX_ENTRY(x) OVX_LIST_1(__VA_ARGS__)
#define OVX_LIST_3(x, ...) OVX_ENTRY(x) OVX_LIST_2(__VA_ARGS__)
#define OVX_LIST_4(x, ...) OVX_ENTRY(x) OVX_LIST_3(__VA_ARGS__)
#define OVX_LIST_5(x, ...) OVX_ENTRY(x) OVX_LIST_4(__VA_ARGS__)
#define OVX_LIST_6(x, ...) OVX_ENTRY(x) OVX_LIST_5(__VA_ARGS__)
#define OVX_LIST_7(x, ...) OVX_ENTRY(x) OVX_LIST_6(__VA_ARGS__)
#define OVX_LIST_8(x, ...) OVX_ENTRY(x) OVX_LIST_7(__VA_ARGS__)
#define OVX_LIST_9(x, ...) OVX_ENTRY(x) OVX_LIST_8(__VA_ARGS__)
#define OVX_LIST_10(x, ...) OVX_ENTRY(x) OVX_LIST_9(__VA_ARGS__)
#define OVX_LIST_11(x, ...) OVX_ENTRY(x) OVX_LIST_10(__VA_ARGS__)
#define OVX_LIST_12(x, ...) OVX_ENTRY(x) OVX_LIST_11(__VA_ARGS__)
#define OVX_LIST_13(x, ...) OVX_ENTRY(x) OVX_LIST_12(__VA_ARGS__)
#define OVX_LIST_14(x, ...) OVX_ENTRY(x) OVX_LIST_13(__VA_ARGS__)
#define OVX_LIST_15(x, ...) OVX_ENTRY(x) OVX_LIST_14(__VA_ARGS__)
#define OVX_LIST_16(x, ...) OVX_ENTRY(x) OVX_LIST_15(__VA_ARGS__)
#define OVX_LIST_17(x, ...) OVX_ENTRY(x) OVX_LIST_16(__VA_ARGS__)
#define OVX_LIST_18(x, ...) OVX_ENTRY(x) OVX_LIST_17(__VA_ARGS__)
#define OVX_LIST_19(x, ...) OVX_ENTRY(x) OVX_LIST_18(__VA_ARGS__)
#define OVX_LIST_20(x, ...) OVX_ENTRY(x) OVX_LIST_19(__VA_ARGS__)
#define OVX_LIST_21(x, ...) OVX_ENTRY(x) OVX_LIST_20(__VA_ARGS__)
#define OVX_LIST_22(x, ...) OVX_ENTRY(x) OVX_LIST_21(__VA_ARGS__)
#define OVX_LIST_23(x, ...) OVX_ENTRY(x) OVX_LIST_22(__VA_ARGS__)
#define OVX_LIST_24(x, ...) OVX_ENTRY(x) OVX_LIST_23(__VA_ARGS__)
#define OVX_LIST_25(x, ...) OVX_ENTRY(x) OVX_LIST_24(__VA_ARGS__)
#define OVX_LIST_26(x, ...) OVX_ENTRY(x) OVX_LIST_25(__VA_ARGS__)
#define OVX_LIST_27(x, ...) OVX_ENTRY(x) OVX_LIST_26(__VA_ARGS__)
#define OVX_LIST_28(x, ...) OVX_ENTRY(x) OVX_LIST_27(__VA_ARGS__)
#define OVX_LIST_29(x, ...) OVX_ENTRY(x) OVX_LIST_28(__VA_ARGS__)
#define OVX_LIST_30(x, ...) OVX_ENTRY(x) OVX_LIST_29(__VA_ARGS__)
#define OVX_LIST_31(x, ...) OVX_ENTRY(x) OVX_LIST_30(__VA_ARGS__)
#define OVX_LIST_32(x, ...) OVX_ENTRY(x) OVX_LIST_31(__VA_ARGS__)
#define OVX_LIST_33(x, ...) OVX_ENTRY(x) OVX_LIST_32(__VA_ARGS__)
#define OVX_LIST_34(x, ...) OVX_ENTRY(x) OVX_LIST_33(__VA_ARGS__)
#define OVX_LIST_35(x, ...) OVX_ENTRY(x) OVX_LIST_34(__VA_ARGS__)
#define OVX_LIST_36(x, ...) OVX_ENTRY(x) OVX_LIST_35(__VA_ARGS__)
#define OVX_LIST_37(x, ...) OVX_ENTRY(x) OVX_LIST_36(__VA_ARGS__)
#define OVX_LIST_38(x, ...) OVX_ENTRY(x) OVX_LIST_37(__VA_ARGS__)
#define OVX_LIST_39(x, ...) OVX_ENTRY(x) OVX_LIST_38(__VA_ARGS__)
#define OVX_LIST_40(x, ...) OVX_ENTRY(x) OVX_LIST_39(__VA_ARGS__)
#define OVX_LIST_41(x, ...) OVX_ENTRY(x) OVX_LIST_40(__VA_ARGS__)
#define OVX_LIST_42(x, ...) OVX_ENTRY(x) OVX_LIST_41(__VA_ARGS__)
#define OVX_LIST_43(x, ...) OVX_ENTRY(x) OVX_LIST_42(__VA_ARGS__)
#define OVX_LIST_44(x, ...) OVX_ENTRY(x) OVX_LIST_43(__VA_ARGS__)
#define OVX_LIST_45(x, ...) OVX_ENTRY(x) OVX_LIST_44(__VA_ARGS__)
#define OVX_LIST_46(x, ...) OVX_ENTRY(x) OVX_LIST_45(__VA_ARGS__)
#define OVX_LIST_47(x, ...) OVX_ENTRY(x) OVX_LIST_46(__VA_ARGS__)
#define OVX_LIST_48(x, ...) OVX_ENTRY(x) OVX_LIST_47(__VA_ARGS__)
#define OVX_LIST_49(x, ...) OVX_ENTRY(x) OVX_LIST_48(__VA_ARGS__)
#define OVX_LIST_50(x, ...) OVX_ENTRY(x) OVX_LIST_49(__VA_ARGS__)
#define OVX_LIST_51(x, ...) OVX_ENTRY(x) OVX_LIST_50(__VA_ARGS__)
#define OVX_LIST_52(x, ...) OVX_ENTRY(x) OVX_LIST_51(__VA_ARGS__)
#define OVX_LIST_53(x, ...) OVX_ENTRY(x) OVX_LIST_52(__VA_ARGS__)
#define OVX_LIST_54(x, ...) OVX_ENTRY(x) OVX_LIST_53(__VA_ARGS__)
#define OVX_LIST_55(x, ...) OVX_ENTRY(x) OVX_LIST_54(__VA_ARGS__)
#define OVX_LIST_56(x, ...) OVX_ENTRY(x) OVX_LIST_55(__VA_ARGS__)
#define OVX_LIST_57(x, ...) OVX_ENTRY(x) OVX_LIST_56(__VA_ARGS__)
#define OVX_LIST_58(x, ...) OVX_ENTRY(x) OVX_LIST_57(__VA_ARGS__)
#define OVX_LIST_59(x, ...) OVX_ENTRY(x) OVX_LIST_58(__VA_ARGS__)
#define OVX_LIST_60(x, ...) OVX_ENTRY(x) OVX_LIST_59(__VA_ARGS__)

/* clang-format on */

/* In the place of a list that is too long; an expression, so that the message stands alone. */
#define OVX_LIST_TAKES_AT_MOST_59_PARAMETERS(...)                                                  \
    (int)sizeof(struct {                                                                           \
        int unused;                                                                                \
        _Static_assert(0, "olvex: a logging macro takes at most 59 parameters");                   \
    }),

#endif
