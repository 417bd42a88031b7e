// The plain functions once more, for C: the same handles, with C linkage and a prefix.
#include <olvex/trace_c.h>

#include "OlvLogCall.h"

namespace {

OlvLogWrapper *handleOf(ovx_OlvLogWrapper *handle)
{
    return reinterpret_cast<OlvLogWrapper *>(handle);
}

ovx_OlvLogWrapper *forC(OlvLogWrapper *handle)
{
    return reinterpret_cast<ovx_OlvLogWrapper *>(handle);
}

} // namespace

const char *ovx_initializeWrapper(const char *propertiesFile)
{
    return initializeWrapper(propertiesFile);
}

char *ovx_get_config_directory_path(char *buffer)
{
    return get_config_directory_path(buffer);
}

ovx_OlvLogWrapper *ovx_createWrapper(int component)
{
    return forC(createWrapper(component));
}

ovx_OlvLogWrapper *ovx_getOlvLogHw()
{
    return forC(getOlvLogHw());
}

ovx_OlvLogWrapper *ovx_getOlvLogSw()
{
    return forC(getOlvLogSw());
}

ovx_OlvLogWrapper *ovx_getOlvLogCom()
{
    return forC(getOlvLogCom());
}

ovx_OlvLogWrapper *ovx_getOlvLogXse()
{
    return forC(getOlvLogXse());
}

ovx_OlvLogWrapper *ovx_getOlvLogFs()
{
    return forC(getOlvLogFs());
}

ovx_OlvLogWrapper *ovx_getOlvLogPlugin()
{
    return forC(getOlvLogPlugin());
}

ovx_OlvLogWrapper *ovx_getOlvLogUse()
{
    return forC(getOlvLogUse());
}

ovx_OlvLogWrapper *ovx_getOlvLogNet()
{
    return forC(getOlvLogNet());
}

int ovx_istraceActive(ovx_OlvLogWrapper *handle, int level)
{
    return istraceActive(handleOf(handle), level);
}

int ovx_getTrcLevel(ovx_OlvLogWrapper *handle)
{
    return getTrcLevel(handleOf(handle));
}

void ovx_traceMIN(ovx_OlvLogWrapper *handle, int line, const char *file, const char *method,
                  const char *format, ...)
{
    OLVEX_TRACE_CALL(handleOf(handle), olvex::kTraceMin);
}

void ovx_traceMID(ovx_OlvLogWrapper *handle, int line, const char *file, const char *method,
                  const char *format, ...)
{
    OLVEX_TRACE_CALL(handleOf(handle), olvex::kTraceMid);
}

void ovx_traceMAX(ovx_OlvLogWrapper *handle, int line, const char *file, const char *method,
                  const char *format, ...)
{
    OLVEX_TRACE_CALL(handleOf(handle), olvex::kTraceMax);
}

void ovx_traceEntry(ovx_OlvLogWrapper *handle, int line, const char *file, const char *method,
                    const char *format, ...)
{
    OLVEX_TRACE_CALL(handleOf(handle), olvex::kTraceEntry);
}

void ovx_traceExit(ovx_OlvLogWrapper *handle, int line, const char *file, const char *method,
                   const char *format, ...)
{
    OLVEX_TRACE_CALL(handleOf(handle), olvex::kTraceExit);
}

int ovx_replaceInvalidXMLChars(char replacement, char *text)
{
    return replaceInvalidXMLChars(replacement, text);
}

char *ovx_createMethodName(const char *prefix, const char *method)
{
    return createMethodName(prefix, method);
}

char *ovx_escapeXmlString(const char *text)
{
    return escapeXmlString(text);
}

char *ovx_convertSlashes(char *text)
{
    return convertSlashes(text);
}

char *ovx_trim(char *text)
{
    return trim(text);
}

const char *ovx_getHomeDir()
{
    return getHomeDir();
}

int ovx_isWriteBlocked(const char *file, const char *directory)
{
    return isWriteBlocked(file, directory);
}
