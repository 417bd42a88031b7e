// The functions of a collection: for each an internal one that expects the API mutex, and a public
// twin that takes it. A macro for each shape, since nothing else makes names. Given and HandedOut
// are the types of what callers give and get.
#pragma once

#include "util/Locked.h"
#include "util/Memory.h"

#include <olvex/ClassCollections.h>
#include <olvex/Collections.h>

// Also for collections in an arena.
#define OVX_DEFINE_LIFE(Name)                                                                      \
    Name *ovxIntlAlloc##Name()                                                                     \
    {                                                                                              \
        return olvex::Memory().make<Name>();                                                       \
    }                                                                                              \
    Name *OvxAlloc##Name()                                                                         \
    {                                                                                              \
        return olvex::locked([] { return ovxIntlAlloc##Name(); });                                 \
    }                                                                                              \
    void ovxIntlFree##Name(Name *collection)                                                       \
    {                                                                                              \
        if (collection) collection->memory().destroy(collection);                                  \
    }                                                                                              \
    void OvxFree##Name(Name *collection)                                                           \
    {                                                                                              \
        olvex::locked([&] { ovxIntlFree##Name(collection); });                                     \
    }

#define OVX_DEFINE_COPY(Name)                                                                      \
    Name *ovxIntlCopy##Name(const Name *collection)                                                \
    {                                                                                              \
        return collection ? collection->copy() : nullptr;                                          \
    }                                                                                              \
    Name *OvxCopy##Name(const Name *collection)                                                    \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntlCopy##Name(collection); });                       \
    }

#define OVX_DEFINE_WALK(Name)                                                                      \
    Name##Node *ovxIntl##Name##Iterator(const Name *collection)                                    \
    {                                                                                              \
        return collection ? collection->first() : nullptr;                                         \
    }                                                                                              \
    Name##Node *Ovx##Name##Iterator(const Name *collection)                                        \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntl##Name##Iterator(collection); });                 \
    }                                                                                              \
    bool ovxIntl##Name##IterHasNext(const Name##Node *iterator)                                    \
    {                                                                                              \
        return iterator;                                                                           \
    }                                                                                              \
    bool Ovx##Name##IterHasNext(const Name##Node *iterator)                                        \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntl##Name##IterHasNext(iterator); });                \
    }                                                                                              \
    Name##Node *ovxIntl##Name##IterNext(const Name##Node *iterator)                                \
    {                                                                                              \
        return iterator ? iterator->next() : nullptr;                                              \
    }                                                                                              \
    Name##Node *Ovx##Name##IterNext(const Name##Node *iterator)                                    \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntl##Name##IterNext(iterator); });                   \
    }

#define OVX_DEFINE_ELEMENTS(Name, Given, HandedOut)                                                \
    HandedOut ovxIntl##Name##IterGet(const Name##Node *iterator)                                   \
    {                                                                                              \
        return iterator ? iterator->handOut() : nullptr;                                           \
    }                                                                                              \
    HandedOut Ovx##Name##IterGet(const Name##Node *iterator)                                       \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntl##Name##IterGet(iterator); });                    \
    }                                                                                              \
    Name##Node *ovxIntl##Name##IterRem(Name##Node *iterator)                                       \
    {                                                                                              \
        return iterator ? iterator->remove() : nullptr;                                            \
    }                                                                                              \
    Name##Node *Ovx##Name##IterRem(Name##Node *iterator)                                           \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntl##Name##IterRem(iterator); });                    \
    }                                                                                              \
    Name##Node *Ovx##Name##GetLink(const Name *collection, Given element)                          \
    {                                                                                              \
        return collection && element ? collection->find(element) : nullptr;                        \
    }

#define OVX_DEFINE_GROUP(Name, Given, HandedOut)                                                   \
    OVX_DEFINE_LIFE(Name)                                                                          \
    OVX_DEFINE_WALK(Name)                                                                          \
    OVX_DEFINE_ELEMENTS(Name, Given, HandedOut)                                                    \
    bool ovxIntl##Name##Add(Name *group, Given element)                                            \
    {                                                                                              \
        return group && group->add(element);                                                       \
    }                                                                                              \
    bool Ovx##Name##Add(Name *group, Given element)                                                \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntl##Name##Add(group, element); });                  \
    }                                                                                              \
    bool ovxIntl##Name##Rem(Name *group, Given element)                                            \
    {                                                                                              \
        return group && group->remove(element);                                                    \
    }                                                                                              \
    bool Ovx##Name##Rem(Name *group, Given element)                                                \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntl##Name##Rem(group, element); });                  \
    }

#define OVX_DEFINE_MAP(Name, Given, HandedOut)                                                     \
    OVX_DEFINE_LIFE(Name)                                                                          \
    OVX_DEFINE_COPY(Name)                                                                          \
    OVX_DEFINE_WALK(Name)                                                                          \
    bool ovxIntl##Name##Put(Name *map, const char *key, Given value)                               \
    {                                                                                              \
        return map && map->put(key, value);                                                        \
    }                                                                                              \
    bool Ovx##Name##Put(Name *map, const char *key, Given value)                                   \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntl##Name##Put(map, key, value); });                 \
    }                                                                                              \
    HandedOut ovxIntl##Name##Get(const Name *map, const char *key)                                 \
    {                                                                                              \
        return map ? map->get(key) : nullptr;                                                      \
    }                                                                                              \
    HandedOut Ovx##Name##Get(const Name *map, const char *key)                                     \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntl##Name##Get(map, key); });                        \
    }                                                                                              \
    void ovxIntl##Name##Rem(Name *map, const char *key)                                            \
    {                                                                                              \
        if (map) map->remove(key);                                                                 \
    }                                                                                              \
    void Ovx##Name##Rem(Name *map, const char *key)                                                \
    {                                                                                              \
        olvex::locked([&] { ovxIntl##Name##Rem(map, key); });                                      \
    }                                                                                              \
    bool ovxIntl##Name##HasKey(const Name *map, const char *key)                                   \
    {                                                                                              \
        return map && map->find(key);                                                              \
    }                                                                                              \
    bool Ovx##Name##HasKey(const Name *map, const char *key)                                       \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntl##Name##HasKey(map, key); });                     \
    }                                                                                              \
    char *ovxIntl##Name##IterGetKey(const Name##Node *iterator)                                    \
    {                                                                                              \
        return iterator ? iterator->handOutKey() : nullptr;                                        \
    }                                                                                              \
    char *Ovx##Name##IterGetKey(const Name##Node *iterator)                                        \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntl##Name##IterGetKey(iterator); });                 \
    }                                                                                              \
    HandedOut ovxIntl##Name##IterGetVal(const Name##Node *iterator)                                \
    {                                                                                              \
        return iterator ? iterator->handOut() : nullptr;                                           \
    }                                                                                              \
    HandedOut Ovx##Name##IterGetVal(const Name##Node *iterator)                                    \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntl##Name##IterGetVal(iterator); });                 \
    }                                                                                              \
    Name##Node *ovxIntl##Name##GetNode(const Name *map, const char *key)                           \
    {                                                                                              \
        return map ? map->find(key) : nullptr;                                                     \
    }                                                                                              \
    void ovxIntl##Name##RemNode(Name *map, Name##Node *node)                                       \
    {                                                                                              \
        if (map && node) map->remove(node);                                                        \
    }

#define OVX_DEFINE_LIST(Name, Given, HandedOut)                                                    \
    OVX_DEFINE_LIFE(Name)                                                                          \
    OVX_DEFINE_COPY(Name)                                                                          \
    OVX_DEFINE_WALK(Name)                                                                          \
    OVX_DEFINE_ELEMENTS(Name, Given, HandedOut)                                                    \
    bool ovxIntl##Name##Append(Name *list, Given element)                                          \
    {                                                                                              \
        return list && list->append(element);                                                      \
    }                                                                                              \
    bool Ovx##Name##Append(Name *list, Given element)                                              \
    {                                                                                              \
        return olvex::locked([&] { return ovxIntl##Name##Append(list, element); });                \
    }                                                                                              \
    void OvxSort##Name(Name *list, int (*compare)(const void *, const void *))                     \
    {                                                                                              \
        olvex::locked([&] {                                                                        \
            if (list) list->sort(compare);                                                         \
        });                                                                                        \
    }                                                                                              \
    Given Ovx##Name##GetIndex(const Name *list, int index)                                         \
    {                                                                                              \
        return list ? list->at(index) : nullptr;                                                   \
    }                                                                                              \
    void Ovx##Name##RemLink(Name *list, Name##Node *node)                                          \
    {                                                                                              \
        if (list && node) list->remove(node);                                                      \
    }
