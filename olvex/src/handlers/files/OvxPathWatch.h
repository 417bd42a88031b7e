// Whether a path still leads where it led when it was last looked at. Looking at a path costs more
// than the write that follows. A path that many records went to is watched instead: then one system
// call that reads no path tells that nothing has happened to any part of it. What happens is known
// at the next question; nothing depends on time. Called with the API mutex held.
//
// WATCHED are, by one inotify instance for the process, every part of the path and of what its
// symbolic links lead to:
//
//   directories         for being moved or deleted
//   links and the log   for that, for the removal of a link to it (IN_ATTRIB), as when another file
//                       is renamed over it, and for a descriptor for writing being closed
//                       (IN_CLOSE_WRITE)
//
// Any event ends the quiet of all watched paths: PathEvents::now moves on. Each is looked at again,
// and watched again when it has been looked at kLooksBetweenWatches times (but see expectQuiet).
//
// THE LOG'S DESCRIPTOR is covered, too: when a host closes all descriptors and opens its own, the
// closing of the log is an event. It is none while a child that was forked without starting another
// program holds the log open. Other processes that close a shared log only cause a look.
//
// THE WATCH'S OWN DESCRIPTORS may be closed by such a host as well, and replaced by others:
//
//   closed, or replaced by anything but an epoll   the question fails, which counts as an event
//   replaced by an epoll of the host's             found by the mark at every kQuestionsTrusted-th
//                                                  question and at every look that would watch
//
// The mark is a signal number set by F_SETSIG, since inotify instances and epolls have no inode of
// their own. What does not bear it is neither read, changed nor closed. A forked child closes its
// copies, which share events with the parent, and starts anew.
//
// NOT WATCHED, but looked at every time, are relative paths, which a change of the working
// directory leads elsewhere; paths over directories that must not be read; file systems that others
// can change behind the kernel's back, such as network ones; and everything once the system's
// inotify instances or watches are used up. A file system mounted over a part of a watched path is
// noticed when the file is next opened.
#pragma once

#include <cstdint>

#include <sys/epoll.h>

namespace olvex {

// The process's watch, an epoll of one inotify instance: the cheapest question there is.
struct PathEvents {
    static int epoll;
    static std::uint64_t now; // moves on with events
    static std::uint32_t questions;
    static const epoll_event kNoPlace;

    // After so many questions it is made sure that it is our epoll that is asked: another one that
    // a host has put exactly in its place may have nothing to tell.
    static constexpr std::uint32_t kQuestionsTrusted = 1024;

    // Whether there are events, or they cannot be asked for. There is no place to write them to, so
    // that whatever a host has made of the descriptor, nothing is taken from it: the kernel answers
    // EFAULT then.
    static bool arePending()
    {
        return epoll_wait(epoll, const_cast<epoll_event *>(&kNoPlace), 1, 0) != 0 ||
               (++questions % kQuestionsTrusted == 0 && !areOurs());
    }
    static bool areOurs();
    static void take();
};

class PathWatch {
  public:
    PathWatch() = default;
    ~PathWatch();
    PathWatch(const PathWatch &) = delete;
    PathWatch &operator=(const PathWatch &) = delete;

    // True when nothing has happened to the path since it was looked at.
    bool isQuiet() const
    {
        if (watchedSince_ == 0) return false;
        if (PathEvents::arePending()) [[unlikely]]
            PathEvents::take();
        return watchedSince_ == PathEvents::now;
    }
    // To be called before the path is looked at: what happens from here on ends the quiet.
    void beforeLook(const char *path);
    // The path is not of interest any more, or is opened anew.
    void end();
    // What ended the watch was the caller's own doing and will not come again soon: the next look
    // may watch.
    void expectQuiet() { looksToGo_ = 0; }

  private:
    std::uint64_t watchedSince_ = 0; // a time of the process's watch; 0: not watched
    int file_ = -1;                  // the watch on what the path led to
    bool isUser_ = false;
    int looksToGo_ = 0;      // before it is watched again
    bool isRefused_ = false; // cannot be watched until opened anew
};

// How many looks come before the first watch: so many cost as much as giving back the watch when
// the process ends, which short-lived programs shall not pay for.
inline constexpr int kLooksBeforeWatching = 10000;

// How many looks come between the watches of one path, so that one to which things happen all the
// time is looked at instead.
inline constexpr int kLooksBetweenWatches = 32;

// For tests: as if so many looks had come before.
void countPathLooks(int looks);

} // namespace olvex
