// Walks over a group that its elements may change while they are visited. A SafeWalks is the part
// of a group that knows the walks in progress; a walk is an object on the stack of the function
// that walks, so walks end in the reverse order of their beginning. PlainWalks is for groups that
// nobody changes underfoot. All under the API mutex.
#pragma once

#include <utility>

namespace olvex {

template <class Node>
class PlainWalks {
  protected:
    void leaving(const Node *) {}
};

template <class Node>
class SafeWalks {
  public:
    // Visits each node that is there when its turn comes. When the node last visited is removed,
    // the walk goes on with its successor; nodes appended behind one that is still there are
    // visited as well; when the group is freed the walk is over.
    class Walk {
      public:
        template <class Group>
        explicit Walk(Group *group) : group_(group), following_(group ? group->first() : nullptr)
        {
            if (group_) outer_ = std::exchange(group_->innermost_, this);
        }
        Walk(const Walk &) = delete;
        Walk &operator=(const Walk &) = delete;
        ~Walk()
        {
            if (group_) group_->innermost_ = outer_;
        }

        // The next node, or null at the end.
        Node *next()
        {
            current_ = current_ ? current_->next() : following_;
            following_ = nullptr;
            return current_;
        }

      private:
        friend class SafeWalks;

        void leaving(const Node *node)
        {
            if (node == current_) {
                current_ = nullptr;
                following_ = node->next();
            } else if (node == following_) {
                following_ = node->next();
            }
        }

        SafeWalks *group_;
        Walk *outer_ = nullptr;
        Node *current_ = nullptr;
        Node *following_; // what comes next while there is no current node
    };

  protected:
    ~SafeWalks()
    {
        for (Walk *walk = innermost_; walk; walk = walk->outer_)
            walk->group_ = nullptr;
    }

    // To be told of each node before it is unlinked.
    void leaving(const Node *node)
    {
        for (Walk *walk = innermost_; walk; walk = walk->outer_)
            walk->leaving(node);
    }

  private:
    Walk *innermost_ = nullptr;
};

} // namespace olvex
