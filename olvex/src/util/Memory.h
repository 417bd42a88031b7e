// Where a structure takes its memory from: the heap, or an arena that gives everything back at
// once. An event that lives for one logging call is built in an arena; what a host may free itself
// comes from the heap. No locks: an arena belongs to whoever holds the API mutex.
#pragma once

#include <olvex/Memory.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

namespace olvex {

struct BaxDelete {
    void operator()(void *block) const { BaxMemoryFree(block); }
};

// A string or record from BaxMemoryMalloc, freed with its owner.
using Text = std::unique_ptr<char, BaxDelete>;
template <class T>
using Owned = std::unique_ptr<T, BaxDelete>;

// A stack of memory: allocations are bumps, and releasing a mark gives back all that came after it.
// One ordinary block is kept for the next time. The owner discards it all; there is no destructor,
// since an arena in static memory must not go while threads still log at the end of the process.
class Arena {
  public:
    struct Mark {
        std::size_t block = 0;
        std::size_t used = 0;
    };

    Arena() = default;
    Arena(const Arena &) = delete;
    Arena &operator=(const Arena &) = delete;

    // Null when memory runs out. Aligned for any scalar type.
    void *allocate(std::size_t size)
    {
        size = (size + kAlign - 1) & ~(kAlign - 1);
        if (current_ && size <= current_->size - used_) {
            void *place = current_->bytes() + used_;
            used_ += size;
            return place;
        }
        return allocateInNewBlock(size);
    }

    Mark mark() const { return {depth_, used_}; }

    void release(Mark mark)
    {
        while (depth_ > mark.block)
            dropBlock();
        used_ = mark.used;
    }

    void discard()
    {
        while (current_)
            dropBlock();
        BaxMemoryFree(std::exchange(spare_, nullptr));
    }

  private:
    static constexpr std::size_t kAlign = alignof(std::max_align_t);
    static constexpr std::size_t kBlock = 8192;

    struct alignas(std::max_align_t) Block {
        Block *below;
        std::size_t size;
        std::size_t usedBelow;
        char *bytes() { return reinterpret_cast<char *>(this + 1); }
    };

    [[gnu::cold, gnu::noinline]] void *allocateInNewBlock(std::size_t size)
    {
        Block *block = takeBlock(size);
        if (!block) return nullptr;
        block->below = current_;
        block->usedBelow = used_;
        current_ = block;
        ++depth_;
        used_ = size;
        return block->bytes();
    }

    Block *takeBlock(std::size_t size)
    {
        if (size <= kBlock && spare_) return std::exchange(spare_, nullptr);
        const std::size_t room = size < kBlock ? kBlock : size;
        if (room > SIZE_MAX - sizeof(Block)) return nullptr;
        auto *block = static_cast<Block *>(BaxMemoryMalloc(sizeof(Block) + room));
        if (block) block->size = room;
        return block;
    }

    // One ordinary block is kept for the next time, so that a steady state allocates nothing.
    void dropBlock()
    {
        Block *block = std::exchange(current_, current_->below);
        used_ = block->usedBelow;
        --depth_;
        if (block->size == kBlock && !spare_)
            spare_ = block;
        else
            BaxMemoryFree(block);
    }

    Block *current_ = nullptr;
    Block *spare_ = nullptr;
    std::size_t used_ = 0;
    std::size_t depth_ = 0;
};

// The heap (BaxMemoryMalloc) or an arena. A value of one pointer, copied freely.
class Memory {
  public:
    constexpr Memory() = default;
    constexpr explicit Memory(Arena *arena) : arena_(arena) {}

    void *allocate(std::size_t size) const
    {
        return arena_ ? arena_->allocate(size) : BaxMemoryMalloc(size);
    }

    bool isArena() const { return arena_ != nullptr; }

    // Gives a block back; an arena takes nothing back one by one.
    void release(void *block) const
    {
        if (!arena_) BaxMemoryFree(block);
    }

    // A NUL-terminated copy; null for null or when memory runs out.
    char *duplicate(const char *text) const
    {
        return text ? duplicate(std::string_view(text)) : nullptr;
    }

    char *duplicate(std::string_view text) const
    {
        auto *copy = static_cast<char *>(allocate(text.size() + 1));
        if (!copy) return nullptr;
        if (!text.empty()) std::memcpy(copy, text.data(), text.size());
        copy[text.size()] = '\0';
        return copy;
    }

    // Makes a T in this memory; null when memory runs out.
    template <class T, class... Arguments>
    T *make(Arguments &&...arguments) const
    {
        void *place = allocate(sizeof(T));
        return place ? ::new (place) T(std::forward<Arguments>(arguments)...) : nullptr;
    }

    // Destroys what make() made.
    template <class T>
    void destroy(T *object) const
    {
        if (!object) return;
        object->~T();
        release(object);
    }

  private:
    Arena *arena_ = nullptr;
};

} // namespace olvex
