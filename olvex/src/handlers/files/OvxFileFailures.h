// What went wrong while the semaphore of a shared log was held, kept in order to be reported once
// it is not: a report may come to another handler that needs the same semaphore.
#pragma once

#include "handlers/OvxFileHandler.h"
#include "util/CxResult.h"

namespace olvex {

class Failures {
  public:
    void add(CxResult result)
    {
        if (!ok(result)) add({Kind::kPlatform, result, 1});
    }
    // The active file could not be read, or the file of number 1 not opened or not written, during
    // a rollover.
    void addRead() { add({Kind::kRead, {}, 1}); }
    void addOpen() { add({Kind::kOpen, {}, 1}); }
    void addWrite() { add({Kind::kWrite, {}, 1}); }
    void add(const Failures &others)
    {
        for (int i = 0; i < others.count_; ++i)
            for (int n = 0; n < others.entries_[i].times; ++n)
                add(others.entries_[i]);
    }

    void report(const OvxFileHandlerVars &vars) const
    {
        for (int i = 0; i < count_; ++i)
            for (int n = 0; n < entries_[i].times; ++n)
                reportOne(entries_[i], vars);
    }

  private:
    enum class Kind { kPlatform, kRead, kOpen, kWrite };
    struct Entry {
        Kind kind;
        CxResult result;
        int times; // many files can fail in the same way, one after the other
    };
    static constexpr int kMost = 16;

    void add(const Entry &entry)
    {
        Entry *last = count_ ? &entries_[count_ - 1] : nullptr;
        if (last && last->kind == entry.kind && last->result.code == entry.result.code)
            ++last->times;
        else if (count_ < kMost)
            entries_[count_++] = entry;
    }

    static void reportOne(const Entry &entry, const OvxFileHandlerVars &vars);

    Entry entries_[kMost] = {};
    int count_ = 0;
};

} // namespace olvex
