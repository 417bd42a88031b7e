// What the three shapes have in common: nodes doubly linked in order of insertion, the memory that
// they come from, and lookup by walking. KeyedChain adds an index over the keys of its nodes once
// there are many. Nothing here locks; whoever changes or walks a chain holds the API mutex or owns
// the collection alone.
#pragma once

#include "util/Memory.h"
#include "util/shapes/KeyIndex.h"

#include <cstddef>

namespace olvex {

template <class Node>
class Chain;

// The part of a node that places it in its chain.
template <class Node>
class Link {
  public:
    Node *next() const { return next_; }
    Node *previous() const { return previous_; }

  private:
    friend class Chain<Node>;

    Node *next_ = nullptr;
    Node *previous_ = nullptr;
};

// Node derives from Link<Node>, says matches(sought), and may be followed in its block by bytes of
// its own.
template <class Node>
class Chain {
  public:
    explicit Chain(Memory memory) : memory_(memory) {}
    Chain(const Chain &) = delete;
    Chain &operator=(const Chain &) = delete;

    Node *first() const { return first_; }
    Node *last() const { return last_; }
    Memory memory() const { return memory_; }
    std::size_t size() const { return count_; }

    template <class Sought>
    Node *find(Sought sought) const
    {
        Node *node = first_;
        while (node && !node->matches(sought))
            node = node->next();
        return node;
    }

  protected:
    ~Chain() = default;

    // A node that is in no chain yet; null when memory runs out.
    Node *makeNode(std::size_t bytesBehind) const
    {
        void *block = memory_.allocate(sizeof(Node) + bytesBehind);
        return block ? ::new (block) Node() : nullptr;
    }

    void append(Node *node)
    {
        node->previous_ = last_;
        (last_ ? last_->next_ : first_) = node;
        last_ = node;
        ++count_;
    }

    // The node's own link to its successor stays readable.
    void unlink(Node *node)
    {
        (node->previous_ ? node->previous_->next_ : first_) = node->next_;
        (node->next_ ? node->next_->previous_ : last_) = node->previous_;
        --count_;
    }

  private:
    Node *first_ = nullptr;
    Node *last_ = nullptr;
    std::size_t count_ = 0;
    Memory memory_;
};

// A chain whose nodes have distinct keys, names or addresses: Node says key().
template <class Node>
class KeyedChain : public Chain<Node> {
  public:
    using Chain<Node>::Chain;

    template <class Key>
    Node *find(Key key) const
    {
        if (!key) return nullptr;
        return index_.built() ? index_.find(key) : Chain<Node>::find(key);
    }

  protected:
    ~KeyedChain() { index_.discard(this->memory()); }

    void append(Node *node)
    {
        Chain<Node>::append(node);
        index_.added(node, *this);
    }

    void unlink(Node *node)
    {
        index_.removed(node);
        Chain<Node>::unlink(node);
    }

    const KeyIndex<Node> &index() const { return index_; }

  private:
    KeyIndex<Node> index_;
};

// A keyed chain of names, some of which lie below others.
template <class Node>
class NamedChain : public KeyedChain<Node> {
  public:
    using KeyedChain<Node>::KeyedChain;

    // Of names with separators: the node with the longest name that `name` lies below.
    Node *findAbove(const char *name, char separator) const
    {
        if (this->index().built()) return this->index().findAbove(name, separator);
        Node *nearest = nullptr;
        std::size_t longest = 0;
        for (Node *node = this->first(); node; node = node->next()) {
            const std::size_t length = std::strlen(node->key());
            const bool isAbove =
                std::strncmp(name, node->key(), length) == 0 && name[length] == separator;
            if (!isAbove || (nearest && length < longest)) continue;
            nearest = node;
            longest = length;
        }
        return nearest;
    }
};

} // namespace olvex
