// Objects that are made on the first request. Nothing is locked while one is made, so that whatever
// its making calls can do no harm: of several that were made at once, the first one published
// stays.
#ifndef OLVEX_TRACE_PUBLISH_H
#define OLVEX_TRACE_PUBLISH_H

namespace olvex {

/** What is in the slot; when it is empty, what make() gives. discard() gets what came too late. */
template <typename T, typename Make, typename Discard>
T *publishedIn(T *&slot, Make make, Discard discard)
{
    T *present = __atomic_load_n(&slot, __ATOMIC_ACQUIRE);
    if (present) return present;
    T *made = make();
    if (!made || __atomic_compare_exchange_n(&slot, &present, made, false, __ATOMIC_ACQ_REL,
                                             __ATOMIC_ACQUIRE))
        return made;
    discard(made);
    return present;
}

/** The same for objects that are made by new. */
template <typename T, typename Make>
T *publishedIn(T *&slot, Make make)
{
    return publishedIn(slot, make, [](T *late) { delete late; });
}

} // namespace olvex

#endif
