// One trace object for each component, made on the first request. No locks.
#include <olvex/trace/OlvexWrapper.h>

#include "OlvLogCall.h"
#include "Publish.h"

#include <initializer_list>

struct OlvexWrapper::Component {
    OlvexWrapper **instance;
    OlvLogWrapper *(*getHandle)();
};

OlvexWrapper *OlvexWrapper::HardwareWrapper_;
OlvexWrapper *OlvexWrapper::VpdWrapper_;
OlvexWrapper *OlvexWrapper::ComWrapper_;
OlvexWrapper *OlvexWrapper::XseWrapper_;
OlvexWrapper *OlvexWrapper::FsWrapper_;
OlvexWrapper *OlvexWrapper::PluginWrapper_;
OlvexWrapper *OlvexWrapper::UseWrapper_;
OlvexWrapper *OlvexWrapper::NetWrapper_;

const OlvexWrapper::Component OlvexWrapper::components_[8] = {
    {&HardwareWrapper_, getOlvLogHw}, {&VpdWrapper_, getOlvLogSw},
    {&ComWrapper_, getOlvLogCom},     {&XseWrapper_, getOlvLogXse},
    {&FsWrapper_, getOlvLogFs},       {&PluginWrapper_, getOlvLogPlugin},
    {&UseWrapper_, getOlvLogUse},     {&NetWrapper_, getOlvLogNet},
};

OlvexWrapper::OlvexWrapper(OlvLogWrapper *handle) : handle_(handle) {}

OlvexWrapper::~OlvexWrapper() = default;

OlvexWrapper *OlvexWrapper::getInstance(OlvexType type)
{
    if (type < OLVEX_HARDWARE || type > OLVEX_NET) return nullptr;
    const Component &component = components_[type];
    return olvex::publishedIn(*component.instance,
                              [&] { return new OlvexWrapper(component.getHandle()); });
}

void OlvexWrapper::cleanupInstances()
{
    for (OlvexWrapper **instance : {&VpdWrapper_, &HardwareWrapper_, &XseWrapper_, &ComWrapper_,
                                    &FsWrapper_, &PluginWrapper_, &UseWrapper_, &NetWrapper_}) {
        delete *instance;
        *instance = nullptr;
    }
}

void OlvexWrapper::initialize(const char *propertiesFile)
{
    initializeWrapper(propertiesFile);
}

void OlvexWrapper::traceMIN(int line, const char *file, const char *method, const char *format, ...)
{
    OLVEX_TRACE_CALL(handle_, olvex::kTraceMin);
}

void OlvexWrapper::traceMID(int line, const char *file, const char *method, const char *format, ...)
{
    OLVEX_TRACE_CALL(handle_, olvex::kTraceMid);
}

void OlvexWrapper::traceMAX(int line, const char *file, const char *method, const char *format, ...)
{
    OLVEX_TRACE_CALL(handle_, olvex::kTraceMax);
}

void OlvexWrapper::traceMidEntry(int line, const char *file, const char *method, const char *format,
                                 ...)
{
    OLVEX_TRACE_CALL(handle_, olvex::kTraceEntry);
}

void OlvexWrapper::traceMidExit(int line, const char *file, const char *method, const char *format,
                                ...)
{
    OLVEX_TRACE_CALL(handle_, olvex::kTraceExit);
}

bool OlvexWrapper::istraceActive(int level)
{
    return ::istraceActive(handle_, level) != 0;
}

int OlvexWrapper::getTrcLevel()
{
    return ::getTrcLevel(handle_);
}

inline namespace olvex_trace {

OlvexWrapper *getOlvexHw()
{
    return OlvexWrapper::getInstance(OLVEX_HARDWARE);
}

OlvexWrapper *getOlvexSw()
{
    return OlvexWrapper::getInstance(OLVEX_VPD);
}

OlvexWrapper *getOlvexCom()
{
    return OlvexWrapper::getInstance(OLVEX_COMMON);
}

OlvexWrapper *getOlvexXse()
{
    return OlvexWrapper::getInstance(OLVEX_SIGEVAL);
}

OlvexWrapper *getOlvexFs()
{
    return OlvexWrapper::getInstance(OLVEX_FILE_SCANNER);
}

OlvexWrapper *getOlvexPlugin()
{
    return OlvexWrapper::getInstance(OLVEX_PLUGIN);
}

OlvexWrapper *getOlvexUse()
{
    return OlvexWrapper::getInstance(OLVEX_USE);
}

OlvexWrapper *getOlvexNet()
{
    return OlvexWrapper::getInstance(OLVEX_NET);
}

} // namespace olvex_trace
