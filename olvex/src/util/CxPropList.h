// Fills a list with many pairs, as the properties reader does: keys are found by an index that
// lives as long as the filling, in which nobody else may change the list. Takes no lock.
#pragma once

#include <olvex/PropList.h>

#include <cstddef>
#include <cstdint>

namespace olvex {

class PropListFiller {
  public:
    explicit PropListFiller(CxPropList *list) : list_(list) {}
    ~PropListFiller();
    PropListFiller(const PropListFiller &) = delete;
    PropListFiller &operator=(const PropListFiller &) = delete;

    // Does what CxPropListPutStr does.
    bool put(const char *key, const char *value);

  private:
    void makeRoom();
    std::int32_t *slotOf(const char *key) const;

    CxPropList *list_;
    std::int32_t *slots_ = nullptr; // by the hash of the key, the entry's index and 1; 0 for none
    std::size_t mask_ = 0;
};

} // namespace olvex
