// A hash index over the keys of a chain's nodes, names or addresses, by open addressing. It exists
// only while a chain is long enough to gain by it and memory is there for it; without it lookups
// walk the chain.
#pragma once

#include "util/Memory.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace olvex {

template <class Node>
class Chain;

// A hash that grows byte by byte, and shrinks again from its end.
class NameHash {
  public:
    void add(char c) { hash_ = (hash_ ^ static_cast<unsigned char>(c)) * kPrime; }
    void takeBack(char c) { hash_ = hash_ * kInverse ^ static_cast<unsigned char>(c); }
    std::uint32_t value() const { return static_cast<std::uint32_t>(hash_ ^ (hash_ >> 32)); }

  private:
    static constexpr std::uint64_t kPrime = 0x100000001b3U;
    static constexpr std::uint64_t kInverse = 0xce965057aff6957bU;
    static_assert(kPrime * kInverse == 1); // modulo 2 to the power of 64

    std::uint64_t hash_ = 0xcbf29ce484222325U;
};

inline std::uint32_t hashKey(const char *name)
{
    NameHash hash;
    for (; *name; ++name)
        hash.add(*name);
    return hash.value();
}

// Multiplied, the bits that differ between addresses come into the upper half.
inline std::uint32_t hashKey(const void *address)
{
    constexpr std::uint64_t kGoldenRatio = 0x9e3779b97f4a7c15U;
    return static_cast<std::uint32_t>((reinterpret_cast<std::uintptr_t>(address) * kGoldenRatio) >>
                                      32);
}

template <class Node>
class KeyIndex {
  public:
    bool built() const { return slots_; }

    template <class Key>
    Node *find(Key sought) const
    {
        return find(hashKey(sought), [&](const Node *node) { return node->matches(sought); });
    }

    // Of names: the node with the longest one in front of one of the name's separators. One pass
    // over the name, however many separators it has.
    Node *findAbove(const char *name, char separator) const
    {
        NameHash hash;
        std::size_t length = 0;
        for (; name[length]; ++length)
            hash.add(name[length]);
        while (length-- > 0) {
            hash.takeBack(name[length]);
            if (name[length] != separator) continue;
            const auto isBeginning = [&](const Node *node) {
                return beginsAs(name, length, *node);
            };
            if (Node *node = find(hash.value(), isBeginning)) return node;
        }
        return nullptr;
    }

    // Takes note of a node that was just appended to the chain.
    void added(Node *node, const Chain<Node> &chain)
    {
        if (!built() && chain.size() <= kWalked) return;
        if (built() && chain.size() * 4 <= capacity() * 3)
            insert(node, hashKey(node->key()));
        else
            rebuild(chain);
    }

    // Takes note of a node that is about to leave the chain.
    void removed(const Node *node)
    {
        if (!built()) return;
        std::size_t place = hashKey(node->key()) & mask_;
        while (slots_[place].node != node)
            place = after(place);
        closeHole(place);
    }

    void discard(Memory memory)
    {
        if (built()) memory.release(std::exchange(slots_, nullptr));
    }

  private:
    static constexpr std::size_t kWalked = 16;

    struct Slot {
        Node *node;
        std::uint32_t hash;
    };

    // Whether a node's key is the first `length` bytes of a name.
    static bool beginsAs(const char *name, std::size_t length, const Node &node)
    {
        const char *key = node.key();
        return std::strncmp(key, name, length) == 0 && !key[length];
    }

    template <class IsSame>
    Node *find(std::uint32_t hash, IsSame isSame) const
    {
        std::size_t place = hash & mask_;
        for (; slots_[place].node; place = after(place))
            if (slots_[place].hash == hash && isSame(slots_[place].node)) return slots_[place].node;
        return nullptr;
    }

    std::size_t capacity() const { return mask_ + 1; }
    std::size_t after(std::size_t place) const { return (place + 1) & mask_; }

    void insert(Node *node, std::uint32_t hash)
    {
        std::size_t place = hash & mask_;
        while (slots_[place].node)
            place = after(place);
        slots_[place] = {node, hash};
    }

    // A table four times as large as the chain; none when there is no memory for it.
    void rebuild(const Chain<Node> &chain)
    {
        discard(chain.memory());
        std::size_t slots = kWalked * 4;
        while (slots < chain.size() * 2)
            slots *= 2;
        slots_ = static_cast<Slot *>(chain.memory().allocate(slots * sizeof(Slot)));
        if (!slots_) return;
        std::memset(slots_, 0, slots * sizeof(Slot));
        mask_ = slots - 1;
        for (Node *node = chain.first(); node; node = node->next())
            insert(node, hashKey(node->key()));
    }

    // Moves back what probing would no longer reach past an empty slot.
    void closeHole(std::size_t hole)
    {
        for (std::size_t place = after(hole); slots_[place].node; place = after(place)) {
            const std::size_t home = slots_[place].hash & mask_;
            if (((place - home) & mask_) < ((place - hole) & mask_)) continue;
            slots_[hole] = slots_[place];
            hole = place;
        }
        slots_[hole] = {};
    }

    Slot *slots_ = nullptr;
    std::size_t mask_ = 0;
};

} // namespace olvex
