// The group: a set in order of insertion. Instances derive from it and add nothing.
#pragma once

#include "util/shapes/Policies.h"

#include <utility>

namespace olvex {

template <class Group, class Node, class Policy>
class GroupNode : public Link<Node> {
  public:
    using Given = typename Policy::Given;

    // Borrowed: valid while the node is in its group.
    typename Policy::Stored element() const { return element_; }
    Given key() const { return element_; }
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
    friend class GroupShape;

    typename Policy::Stored element_{};
    Group *owner_ = nullptr;
};

template <class Group, class Node, class Policy>
class GroupShape : public KeyedChain<Node>, public Policy::template Walks<Node> {
  public:
    using Given = typename Policy::Given;

    explicit GroupShape(Memory memory = {}) : KeyedChain<Node>(memory) {}
    ~GroupShape() { clear(); }

    bool add(Given element)
    {
        if (!element || this->find(element)) return false;
        Node *node = this->makeNode(Policy::room(element));
        if (!node) return false;
        node->element_ = Policy::keep(element, node + 1);
        node->owner_ = static_cast<Group *>(this);
        this->append(node);
        return true;
    }

    bool remove(Given element)
    {
        Node *node = element ? this->find(element) : nullptr;
        if (node) remove(node);
        return node;
    }

    // Dropping an element can run foreign code that changes this very group, so it comes last.
    void remove(Node *node)
    {
        const Memory memory = this->memory();
        this->leaving(node);
        this->unlink(node);
        Policy::drop(node->element_);
        memory.release(node);
    }

    void clear()
    {
        while (Node *node = this->first())
            remove(node);
    }
};

} // namespace olvex
