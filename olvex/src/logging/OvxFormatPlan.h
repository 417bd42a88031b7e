// Formats as they are printed with typed parameters: parsed once, printed often. Used with the API
// mutex held, or by one caller alone.
#pragma once

#include <olvex/Parm.h>
#include <olvex/Printf.h>
#include <olvex/StringBuff.h>

#include <cstddef>
#include <span>

#include "util/print/CxPrintUtil.h"

namespace olvex {

// Parameters to print, in a row or in a list. A list is walked, quickly when they are asked for in
// order.
class Parms {
  public:
    explicit Parms(std::span<const OvxParm> row) : row_(row.data()), size_(row.size()) {}
    explicit Parms(const ParmList *list);

    std::size_t size() const { return size_; }

    // There must be as many.
    const OvxParm &at(std::size_t index) { return row_ ? row_[index] : inList(index); }

  private:
    const OvxParm &inList(std::size_t index);

    const OvxParm *row_ = nullptr;
    std::size_t size_ = 0;
    const ParmList *list_ = nullptr;
    const ParmListNode *node_ = nullptr;
    std::size_t nodeIndex_ = 0;
};

// A parsed format. Points into the text that it was parsed from.
class FormatPlan {
  public:
    // False when the format cannot be parsed or memory runs out; such a plan prints nothing.
    bool parse(const char *format);
    bool isValid() const { return steps_ != nullptr; }

    // Appends the format printed over `parms`; nothing when it uses more parameters than there are.
    // An item that cannot be printed ends the text.
    void print(CxStringBuff *buffer, Parms parms);
    // Whether what it prints may hold a zero byte: a "%c" may.
    bool mayPrintZero() const { return usesEngine_; }

    void discard();

  private:
    struct Step; // what one item of the format comes to

    bool makeSteps();
    bool printWithEngine(CxStringBuff *buffer, const Step &step, Parms &parms);
    void fillSlots(Parms &parms);

    CxPrintfFmts formats_ = {};
    CxPrintfArgs arguments_ = {};
    Step *steps_ = nullptr;
    FillBudget budget_ = {}; // of the print that is under way
    bool usesEngine_ = false;
    bool filled_ = false;
};

// The plans of the formats used last. Their memory is kept until discard().
class FormatCache {
  public:
    // The plan of a format; there until the next call. One that could not be parsed is tried again
    // each time: it may have been memory that was lacking.
    FormatPlan &planOf(const char *format);

    void discard();

  private:
    static constexpr std::size_t kSlots = 128;

    // A format found here is compared byte by byte: its address only says where to look.
    struct Slot {
        CxStringBuff text = {};
        FormatPlan plan;
    };

    FormatPlan &parseInto(Slot &slot, const char *format);

    Slot slots_[kSlots];
    FormatPlan passing_; // of a format that is not kept
};

} // namespace olvex
