// The list: a sequence with repeats, a count and sorting. A node's block holds its element too.
// Sorting exchanges the elements of nodes, so a block is given back when both its node and the
// element that was born in it are gone.
#pragma once

#include "util/shapes/Policies.h"

#include <cstdlib>
#include <type_traits>
#include <utility>

namespace olvex {

template <class List, class Node, class Policy>
class ListNode : public Link<Node> {
  public:
    using Given = typename Policy::Given;

    // Borrowed: valid while it is in the list.
    Given element() const { return element_; }
    bool matches(Given sought) const { return Policy::same(element_, sought); }
    auto handOut() const { return Policy::handOut(element_); }

    // Removes this node and returns the one that followed it.
    Node *remove()
    {
        Node *following = this->next();
        owner_->remove(static_cast<Node *>(this));
        return following;
    }

  private:
    template <class, class, class>
    friend class ListShape;

    typename Policy::Stored element_{};
    List *owner_ = nullptr;
    int uses_ = 2; // the node and the element of this block
};

template <class List, class Node, class Policy>
class ListShape : public Chain<Node> {
  public:
    using Given = typename Policy::Given;
    using Stored = typename Policy::Stored;
    using Compare = int (*)(const void *, const void *);

    explicit ListShape(Memory memory = {}) : Chain<Node>(memory) {}
    ~ListShape() { clear(); }

    bool append(Given element)
    {
        static_assert(sizeof(Node) % alignof(std::remove_pointer_t<Stored>) == 0);
        Node *node = element ? this->makeNode(Policy::room(element)) : nullptr;
        if (!node) return false;
        node->element_ = Policy::keep(element, node + 1);
        node->owner_ = static_cast<List *>(this);
        Chain<Node>::append(node);
        return true;
    }

    // For lists in an arena, whose elements point to what lives as long as they do.
    bool appendBorrowed(const std::remove_pointer_t<Stored> &element)
    {
        Node *node = this->makeNode(sizeof element);
        if (!node) return false;
        node->element_ =
            ::new (static_cast<void *>(node + 1)) std::remove_pointer_t<Stored>(element);
        node->owner_ = static_cast<List *>(this);
        Chain<Node>::append(node);
        return true;
    }

    void remove(Node *node)
    {
        this->unlink(node);
        Node *birthplace = reinterpret_cast<Node *>(node->element_) - 1;
        giveUp(birthplace);
        giveUp(node);
    }

    void clear()
    {
        while (Node *node = this->first())
            remove(node);
    }

    // Borrowed; null when there is no such place.
    Given at(int index) const
    {
        if (index < 0 || static_cast<std::size_t>(index) >= this->size()) return nullptr;
        const Node *node = this->first();
        while (index-- > 0)
            node = node->next();
        return node->element();
    }

    // `compare` gets pointers to two pointers to elements.
    void sort(Compare compare)
    {
        if (!compare || !this->first()) return;
        Owned<Stored> scratch(
            static_cast<Stored *>(BaxMemoryMalloc(this->size() * sizeof(Stored))));
        if (!scratch) return;
        Stored *entry = scratch.get();
        for (Node *node = this->first(); node; node = node->next())
            *entry++ = node->element_;
        std::qsort(scratch.get(), this->size(), sizeof(Stored), compare);
        entry = scratch.get();
        for (Node *node = this->first(); node; node = node->next())
            node->element_ = *entry++;
    }

    // A list of the same elements in `memory`; null when memory runs out.
    List *copy(Memory memory = {}) const
    {
        auto *twin = memory.make<List>(memory);
        const Node *node = this->first();
        while (twin && node && twin->append(node->element()))
            node = node->next();
        if (node) memory.destroy(std::exchange(twin, nullptr));
        return twin;
    }

  private:
    void giveUp(Node *block)
    {
        if (--block->uses_ == 0) this->memory().release(block);
    }
};

} // namespace olvex
