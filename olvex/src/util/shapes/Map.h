// The map: string keys in order of insertion. A node's block holds the key and, where values are
// strings, the value it was made with; a value that replaces it has a block of its own. A map in an
// arena can borrow keys and values that outlive it.
#pragma once

#include "util/shapes/Policies.h"

#include <utility>

namespace olvex {

template <class Node, class Policy>
class MapNode : public Link<Node> {
  public:
    using Stored = typename Policy::Stored;

    // Borrowed: valid while the node is in its map and, for the value, until it is replaced.
    const char *key() const { return key_; }
    Stored value() const { return value_; }
    bool matches(const char *sought) const
    {
        return key_ == sought || (*key_ == *sought && std::strcmp(key_, sought) == 0);
    }
    char *handOutKey() const { return Memory().duplicate(key_); }
    auto handOut() const { return Policy::handOut(value_); }

  private:
    template <class, class, class>
    friend class MapShape;

    const char *key_ = nullptr;
    Stored value_{};
};

template <class Map, class Node, class Policy>
class MapShape : public NamedChain<Node> {
  public:
    using Given = typename Policy::Given;
    using Stored = typename Policy::Stored;

    explicit MapShape(Memory memory = {}) : NamedChain<Node>(memory) {}
    ~MapShape() { clear(); }

    // A null value is stored as such.
    bool put(const char *key, Given value)
    {
        if (!key) return false;
        Node *node = this->find(key);
        return node ? replace(node, value) : insert(key, value);
    }

    // For maps in an arena, whose keys and values are text that lives as long as they do.
    bool putBorrowed(const char *key, Stored value)
    {
        return !key || this->find(key) ? put(key, value) : addBorrowed(key, value);
    }

    // The same for a key that is not there yet.
    bool addBorrowed(const char *key, Stored value)
    {
        Node *node = this->makeNode(0);
        if (!node) return false;
        node->key_ = key;
        node->value_ = value;
        this->append(node);
        return true;
    }

    auto get(const char *key) const
    {
        const Node *node = this->find(key);
        return node ? node->handOut() : nullptr;
    }

    void remove(const char *key)
    {
        if (Node *node = this->find(key)) remove(node);
    }

    // Dropping a value can run foreign code that changes this very map, so it comes last.
    void remove(Node *node)
    {
        const Memory memory = this->memory();
        this->unlink(node);
        dropValue(memory, node, node->value_);
        memory.release(node);
    }

    void clear()
    {
        while (Node *node = this->first())
            remove(node);
    }

    // A map of the same pairs in `memory`; null when memory runs out.
    Map *copy(Memory memory = {}) const
    {
        auto *twin = memory.make<Map>(memory);
        const Node *node = this->first();
        while (twin && node && twin->put(node->key(), node->value()))
            node = node->next();
        if (node) memory.destroy(std::exchange(twin, nullptr));
        return twin;
    }

  private:
    static char *behindKey(Node *node)
    {
        auto *key = reinterpret_cast<char *>(node + 1);
        return node->key_ == key ? key + std::strlen(key) + 1 : nullptr;
    }

    bool insert(const char *key, Given value)
    {
        const std::size_t keyRoom = std::strlen(key) + 1;
        Node *node = this->makeNode(keyRoom + Policy::room(value));
        if (!node) return false;
        node->key_ = static_cast<const char *>(std::memcpy(node + 1, key, keyRoom));
        if (value) node->value_ = Policy::keep(value, behindKey(node));
        this->append(node);
        return true;
    }

    // The node may be gone when the old value has been dropped.
    bool replace(Node *node, Given value)
    {
        const std::size_t room = Policy::room(value);
        void *place = room ? this->memory().allocate(room) : nullptr;
        if (room && !place) return false;
        const bool ownBlock = hasOwnBlock(node);
        Stored old = std::exchange(node->value_, value ? Policy::keep(value, place) : nullptr);
        release(this->memory(), old, ownBlock);
        return true;
    }

    static bool hasOwnBlock(Node *node)
    {
        return Policy::room(node->value_) && static_cast<void *>(node->value_) != behindKey(node);
    }

    static void dropValue(Memory memory, Node *node, Stored value)
    {
        release(memory, value, hasOwnBlock(node));
    }

    static void release(Memory memory, Stored value, bool ownBlock)
    {
        if (!value) return;
        Policy::drop(value);
        if (ownBlock) memory.release(value);
    }
};

} // namespace olvex
