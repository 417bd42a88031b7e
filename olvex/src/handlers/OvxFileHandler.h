// The file handler's private variables and class functions; the handler for shared files uses the
// same variables and configuration. Called with the API mutex held.
//
// A descriptor is the log's only while device and inode say so: a host may have closed all
// descriptors, as daemons do, and opened its own files under the same numbers. A file that is not
// the log is neither written, emptied, copied nor closed; the log is opened anew for the record. As
// long as nothing of the kind happens, the check costs no system call of its own:
//
//   the path was looked at   one statx of the descriptor gives its identity and its size
//   the path is watched      the watch vouches for the descriptor (see OvxPathWatch.h); where the
//                            size is needed, one lseek gives it
//   after a failed write, and before a rollover, a trailer and closing: statx
//
// A path that must not be looked at, since the process has dropped its privileges, does not mean
// that the file is gone: writing goes on.
#pragma once

#include <olvex/Process.h>

#include "handlers/files/OvxFileState.h"
#include "handlers/files/OvxLogFiles.h"
#include "handlers/files/OvxPathWatch.h"
#include "toolkit/OvxObject.h"

struct OvxFileHandlerVars {
    CxFile file = -1;
    bool isOpen = false;
    bool isDoubtful = false; // it has to be checked whether `file` still is the log
    olvex::FileState state;  // of the open file: which it is, and its size as last measured
    olvex::PathWatch watch;  // whether the path still leads to it
    std::int32_t maxFileBytes = 1048576;
    std::int32_t maxFiles = 3;
    olvex::LogName name;
    uc_ch_t *codeSet = nullptr; // none: UTF-8
    std::uint32_t filePermission = 0744;
    std::uint32_t dirPermission = 0771;
    bool appending = true;
    bool semOpen = false;
    std::int32_t semKey = 31821;
    CxSem sem = -1;
    bool logInternalErrs = true;
    bool emptyUncopied = true;  // a shared rollover empties the file when its copy failed
    bool rolloverWaits = false; // it could not be made and has been reported
};

namespace olvex {

OvxFileHandlerVars *fileVarsOf(const OvxObject *handler);

// Whether a file of that size must be rolled over before the next record.
bool isLogFull(const OvxFileHandlerVars &vars, std::uint64_t size);

// Makes the directory and opens the active file, without more; reports what fails.
bool openLogFile(OvxFileHandlerVars &vars, int flags);

// Whether the path still leads to the open file; hidden: the path must not be looked at.
enum class Presence { kThere, kGone, kHidden };

// The second form asks the file system in any case.
Presence findLog(OvxFileHandlerVars &vars);
Presence lookForLog(OvxFileHandlerVars &vars);

// Reads the size of the open file. When that fails, or the descriptor is not the log's any more,
// the file is closed, to be opened anew.
CxResult measure(OvxFileHandlerVars &vars);

// The same after a write that failed, which another file in the descriptor's place may explain.
CxResult measureAfter(OvxFileHandlerVars &vars, CxResult written);

// What went wrong while a file was closed; to be reported when the handler's variables are settled,
// since a report may come back to the handler.
struct Closing {
    CxResult written = {'-', 0};
    CxResult closed = {'-', 0};

    void report() const;
};

// Closes the file, with the formatter's trailer or without, and reports nothing.
Closing closeWithTrailer(OvxObject *handler, OvxFileHandlerVars &vars);
Closing closeWithoutTrailer(OvxFileHandlerVars &vars);

// A text as it goes into the file: UTF-8 as it is, else converted into the one buffer that is there
// for that, so nothing may be reported while a text lives.
class EncodedText {
  public:
    EncodedText(uc_ch_t *codeSet, const char *utf8, std::size_t size)
        : text_(utf8), size_(size), isOwn_(codeSet)
    {
        if (codeSet) encode(codeSet);
    }
    ~EncodedText()
    {
        if (isOwn_) trimBuffer();
    }
    EncodedText(const EncodedText &) = delete;
    EncodedText &operator=(const EncodedText &) = delete;

    const char *get() const { return text_; }
    std::size_t size() const { return size_; }

  private:
    void encode(uc_ch_t *codeSet);
    static void trimBuffer();

    const char *text_;
    std::size_t size_;
    bool isOwn_;
};

void reportFailure(CxResult result);

} // namespace olvex

void *OvxFileHandlerFAllocVars();
void OvxFileHandlerFFreeVars(void *variables);
void OvxFileHandlerFCfgChange(OvxObject *handler, const char *name);
void OvxFileHandlerFProcess(OvxObject *handler, OvxEvent *event);
void OvxFileHandlerFOpen(OvxObject *handler);
void OvxFileHandlerFClose(OvxObject *handler);
// Shifts the numbered files by one, the active one becoming number 1.
void ovxFileHandlerDoRollover(OvxFileHandlerVars &vars);
void ovxFileHandlerCfgPerms(OvxObject *handler, const char *text);
void ovxFileHandlerCfgDirPerms(OvxObject *handler, const char *text);

void OvxMultiProcFileHandlerFProcess(OvxObject *handler, OvxEvent *event);
void OvxMultiProcFileHandlerFOpen(OvxObject *handler);
void OvxMultiProcFileHandlerFClose(OvxObject *handler);
