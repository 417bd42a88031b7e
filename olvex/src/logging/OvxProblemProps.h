// The event properties that problem-determination records have a place of their own for, found in
// one walk over the event's properties. Borrowed from the event; no lock.
#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

#include "logging/OvxEvent.h"
#include "util/collections/OvxStringToStringMap.h"

namespace olvex {

class ProblemProps {
  public:
    enum Name {
        kServer,
        kServerFormat,
        kProduct,
        kComponent,
        kProductInstance,
        kSourceFile,
        kSourceFunction,
        kSourceLine,
        kThreadId,
        kProcessId,
        kCorrelationId,
        kClient,
        kOther // any other property
    };

    explicit ProblemProps(const OvxEvent *event)
    {
        const StringToStringMap *properties = propertiesOf(event);
        const auto *node = properties ? properties->first() : nullptr;
        for (; node; node = node->next()) {
            const Name name = nameOf(node->key());
            if (name == kOther)
                hasOthers_ = true;
            else
                values_[name] = node->value();
        }
    }

    // Null when the event has no such property, or one without value.
    const char *operator[](Name name) const { return values_[name]; }
    bool hasOthers() const { return hasOthers_; }

    static Name nameOf(std::string_view key)
    {
        return find(key, std::make_index_sequence<kOther>());
    }

  private:
    // In the order of the names above.
    static constexpr std::string_view kNames[kOther] = {
        "server",
        "serverFormat",
        "product",
        "component",
        "productInstance",
        "ovx_prop_srcfile",
        "ovx_prop_srcfunction",
        "ovx_prop_srcline",
        "threadId",
        "processId",
        "correlationId",
        "client",
    };

    // Spelled out for each name, so that sizes are constants and comparing is a few instructions.
    template <std::size_t... Index>
    static Name find(std::string_view key, std::index_sequence<Index...>)
    {
        Name name = kOther;
        static_cast<void>(
            ((key == kNames[Index] && (name = static_cast<Name>(Index), true)) || ...));
        return name;
    }

    const char *values_[kOther] = {};
    bool hasOthers_ = false;
};

} // namespace olvex
