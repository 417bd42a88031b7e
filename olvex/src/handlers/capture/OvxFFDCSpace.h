// The disk space of a base directory of first failure data capture: what is used, whether an action
// may use more, and the deleting of the oldest files. Symbolic links count as what they are and are
// never followed; what has a path too long to be kept is left alone. Called with the API mutex
// held.
#pragma once

#include "toolkit/OvxObject.h"

struct OvxFileData {
    std::int64_t size;       // bytes
    std::int64_t modifyTime; // seconds since 1970
    char path[256];
};

struct OvxFileDataList {
    OvxFileData *items; // block of BaxMemoryMalloc
    std::int32_t count;
    std::int32_t capacity;
};

// The bytes used by the files below `dir`.
std::int64_t ovxCountFFDCSpaceUsed(const char *dir);
// Whether an action that needs so many bytes may go ahead, for which files may be deleted.
bool ovxIsFFDCSpaceAvailable(OvxObject *handler, std::int64_t bytesNeeded);
// Deletes the oldest files down to the first warning limit; false when that was not reached.
bool ovxFFDCCleanup(OvxObject *handler);

// Appends every file below `dir`; one for which there is no memory is left out.
void ovxFindAllFileData(const char *dir, OvxFileDataList *list);
// Makes room for one more.
bool ovxEnsureFileDataListCapacity(OvxFileDataList *list);
// Orders two OvxFileData by time, for qsort.
int ovxCompareFileAges(const void *a, const void *b);
