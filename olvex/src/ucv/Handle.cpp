// Code-set handles: making, duplicating and freeing them, the default one, start and end of the
// services.
#include "ucv/Handle.h"

#include <olvex/Memory.h>

#include <utility>

#include "ucv/Convert.h"
#include "util/CxProcess.h"
#include "util/Memory.h"

#include <cstdlib>

using namespace olvex;
using namespace olvex::ucv;

const char ucv_version[16] = "UCV Version 2.3";
int ucv_initialized = 0;

namespace olvex::ucv {

uc_ch_t osHandle = {nullptr, kBytes, "OS", 0, false, {}, {}, false, false, 0, true};
uc_ch_t utf8Handle = {nullptr, kUtf8, "UTF8", 0, false, {}, {}, false, false, 0, true};
uc_ch_t *defaultHandle = &osHandle;
uc_ch_t *osLocaleHandle = &osHandle;

} // namespace olvex::ucv

namespace {

constexpr char kNamelessBytes[] = "INTERNAL37";

void fillFromHeader(uc_ch_t &handle, TableImage *table)
{
    const unsigned char *bytes = table->bytes();
    handle.table = table;
    handle.tableSize = table->size;
    const bool isEbcdic = table16(*table, kEbcdicMarkAt) == kEbcdicMark;
    handle.type = isEbcdic ? std::uint16_t{kEbcdicSingleByte} : table16(*table, kFamilyAt);
    std::memcpy(handle.name, bytes + kNameAt, kNameSize - 1);
    handle.tableValues[0] = 1;
    handle.tableValues[1] = table16(*table, kValue62At);
    handle.tableValues[2] = table16(*table, kValue56At);
    std::memcpy(handle.tableBytes, bytes + kValue64At, sizeof handle.tableBytes);
    prepareLookup(*table, handle.type);
    handle.keepsAscii = mapsAsciiToItself(handle);
    handle.substCount = 0; // what was asked there is no conversion
}

uc_ch_t *makeFromTable(const char *name)
{
    TableImage *table = loadTable(name);
    auto *handle = table ? Memory().make<uc_ch_t>() : nullptr;
    if (handle)
        fillFromHeader(*handle, table);
    else
        releaseTable(table);
    return handle;
}

uc_ch_t *makeByTableName(const char *name)
{
    if (BaxStringCmp(name, utf8Handle.name) == 0) return &utf8Handle;
    if (BaxStringCmp(name, kNamelessBytes) != 0) return makeFromTable(name);
    auto *handle = Memory().make<uc_ch_t>();
    if (handle) handle->type = kBytes;
    return handle;
}

// The first of the names for which there is a code set; "OS" bytes when there is none.
uc_ch_t *firstOf(const char *name, const char *fallback)
{
    if (uc_ch_t *handle = ucv_cs_new(name)) return handle;
    uc_ch_t *handle = ucv_cs_new(fallback);
    return handle ? handle : &osHandle;
}

const char *configuredCodeSet()
{
    const char *name = cxTrustedEnv("UCV_CODESET");
    return name && *name ? name : "OS";
}

} // namespace

int ucv_init(void)
{
    if (ucv_initialized) return 0;
    ucv_initialized = 1; // first, since what follows asks for the default
    defaultHandle = firstOf(configuredCodeSet(), "DEFAULT");
    osLocaleHandle = firstOf("OS", "OSDEFAULT");
    return 0;
}

int ucv_uninit(void)
{
    ucv_cs_free(std::exchange(defaultHandle, &osHandle));
    ucv_cs_free(std::exchange(osLocaleHandle, &osHandle));
    ucv_initialized = 0;
    return 0;
}

uc_ch_t *ucv_cs_new(const char *name)
{
    if (!name) return nullptr;
    if (BaxStringStrpbrk(name, "/\\")) return makeFromTable(name);
    char tableName[kTableNameSize];
    return makeTableName(name, tableName) ? makeByTableName(tableName) : nullptr;
}

int ucv_cs_free(uc_ch_t *handle)
{
    if (!handle || isBuiltIn(handle)) return 0;
    if (handle == defaultHandle) defaultHandle = &osHandle;
    if (handle == osLocaleHandle) osLocaleHandle = &osHandle;
    releaseTable(handle->table);
    BaxMemoryFree(handle);
    return 0;
}

uc_ch_t *ucv_dup_handle(const uc_ch_t *handle)
{
    const uc_ch_t *source = orDefault(const_cast<uc_ch_t *>(handle));
    auto *copy = Memory().make<uc_ch_t>(*source);
    if (!copy) return nullptr;
    if (copy->table) ++copy->table->references;
    copy->sharedTable = true;
    copy->substCount = 0;
    copy->inShift = copy->outShift = false;
    return copy;
}

const void *ucv_cs_table(const uc_ch_t *handle, uint32_t *size)
{
    const uc_ch_t *source = orDefault(const_cast<uc_ch_t *>(handle));
    if (size) *size = source->tableSize;
    return source->table ? source->table->bytes() : nullptr;
}

int ucv_set_def_cs(uc_ch_t *handle)
{
    ucv_init();
    defaultHandle = handle ? handle : &osHandle;
    return 0;
}

uc_ch_t *ucv_get_def_cs(void)
{
    return orDefault(nullptr);
}

const char *ucv_get_cs_name(const uc_ch_t *handle)
{
    return orDefault(const_cast<uc_ch_t *>(handle))->name;
}
