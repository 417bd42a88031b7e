/*
 * Files, paths and directories. Names may be written with either separator: backslashes are read as
 * slashes by everything that opens or changes a file, which takes names of at most 254 bytes. What
 * can fail returns a CxResult: kind '-' and code 0 for success, kind 'p' and the platform's error
 * number for failure, CX_EINVAL for a missing or bad argument, when nothing is done. What functions
 * give out is set on success only, except where they say more. Names and buffers are borrowed. None
 * of these functions takes a lock; a handle belongs to one thread at a time.
 */
#ifndef OLVEX_FILE_H
#define OLVEX_FILE_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** Error numbers that the portability layer makes itself. */
enum {
    CX_EINVAL = 22, /**< a required argument is missing or bad */
    CX_ENOMEM = 12, /**< no memory */
    CX_ETIME = 62,  /**< not ready, or not to be had, in time */
    CX_ENOSYS = 89  /**< the host name could not be obtained */
};

/** A file descriptor; -1 when closed. The variable is the caller's. */
typedef int32_t CxFile;

/** Size and times of a file; times are seconds since 1970-01-01 00:00 UTC. */
typedef struct CxFileInfo {
    int64_t size;       /**< bytes */
    int64_t changeTime; /**< last change of its status */
    int64_t modifyTime; /**< last change of its content */
    int64_t accessTime; /**< last access */
} CxFileInfo;

/** A path of at most 254 bytes with slashes only. */
typedef struct CxFilePath {
    char path[256];  /**< NUL-terminated */
    int32_t length;  /**< in bytes; -1 while unset or too long */
    int32_t lastSep; /**< place of the last slash, -1 for none */
} CxFilePath;

/** An open directory; NULL when closed. The variable is the caller's. */
typedef struct CxDirectoryStream *CxDirectory;

/** Opens a file with flags as for open(2); a new one gets mode 0600. Close-on-exec. */
OVX_API CxResult CxFileOpen(CxFile *file, const char *name, int flags);
/** Opens a file with flags and permission mode as for open(2). Close-on-exec. */
OVX_API CxResult CxFileOpenMode(CxFile *file, const char *name, int flags, uint32_t mode);
/**
 * Reads once, at most `length` bytes; `count` receives the bytes read, 0 at the end of the file, -1
 * on failure.
 */
OVX_API CxResult CxFileRead(CxFile *file, void *buffer, size_t length, int64_t *count);
/**
 * Writes once, at most `length` bytes; `count` receives the bytes written, which may be fewer, -1
 * on failure.
 */
OVX_API CxResult CxFileWrite(CxFile *file, const void *buffer, size_t length, int64_t *count);
/** Moves the position by `offset` bytes from where `whence` says, as lseek(2). */
OVX_API CxResult CxFileSeek(CxFile *file, int64_t offset, int whence);
/** Empties the file and goes to its beginning. */
OVX_API CxResult CxFileTrunc(CxFile *file);
/** The size of the open file in bytes. */
OVX_API CxResult CxFileGetSize(CxFile *file, int64_t *size);
/** Waits until what was written is on the disk. */
OVX_API CxResult CxFileFlush(CxFile *file);
/** Closes the file; the variable becomes -1 whether or not closing fails. */
OVX_API CxResult CxFileClose(CxFile *file);

/** The size in bytes of the file called `name`, which is used as given. */
OVX_API CxResult CxFileNameGetSize(const char *name, int64_t *size);
/** Size and times of the file called `name`, which is used as given. */
OVX_API CxResult CxFileNameGetInfo(CxFileInfo *info, const char *name);
/** Removes a file or an empty directory. */
OVX_API CxResult CxFileNameRemove(const char *name);
/** Renames a file or directory; a file that has the new name already is replaced. */
OVX_API CxResult CxFileNameRename(const char *oldName, const char *newName);
/**
 * Copies a name with slashes for backslashes into `target`, at most `size` bytes; a name that fills
 * them all comes without a terminator. 1, or 0 for a null argument or size 0.
 */
OVX_API int CxFileNameLocalize(const char *name, char *target, size_t size);
/**
 * Copies a name as strncpy(3) with `size` and turns every backslash in the whole target area into a
 * slash; 1, or 0 for a null argument.
 */
OVX_API int CxFileNameGetNative(const char *name, char *target, size_t size);

/** Sets a path to a copy of `name`; 1, or 0 and an unset path when that exceeds 254 bytes. */
OVX_API int CxInitFilePath(CxFilePath *path, const char *name);
/**
 * Asks for a directory: 0 when one is there, ENOTDIR for anything else, else the platform's error
 * number, CX_EINVAL for an unset or empty path.
 */
OVX_API int CxFilePathIsDir(const CxFilePath *path);
/**
 * Asks for anything at all: 0 when something is there, else the platform's error number, CX_EINVAL
 * for an unset or empty path.
 */
OVX_API int CxFilePathExists(const CxFilePath *path);
/** Sets `parent` to the path before its last slash; 1, or 0 when there is none. */
OVX_API int CxFilePathParent(const CxFilePath *path, CxFilePath *parent);
/**
 * Makes a directory and its missing parents, each with exactly `mode` whatever the process's mask;
 * those that exist stay as they are. 0, or the error number that stopped it.
 */
OVX_API int CxFilePathMkdirs(const CxFilePath *path, uint32_t mode);

/** Opens a directory; CX_EINVAL also when the name is too long or there is no such directory. */
OVX_API CxResult CxDirectoryOpen(CxDirectory *directory, const char *name);
/**
 * Puts the next entry's name into `name`, "." and ".." included: at most `length` bytes and then a
 * terminator, for which there must be room as well. Success with an empty name is the end.
 */
OVX_API CxResult CxDirectoryGetNext(CxDirectory *directory, char *name, size_t length);
/** Closes the directory; the variable becomes NULL whether or not closing fails. */
OVX_API CxResult CxDirectoryClose(CxDirectory *directory);

OVX_END_DECLS

#endif
