// The problem-determination logger.
#include "logging/OvxPDLogger.h"

#include <olvex/Event.h>
#include <olvex/Process.h>
#include <olvex/System.h>
#include <olvex/Thread.h>

#include "logging/OvxEvent.h"
#include "messages/Messages.h"
#include "util/CxResult.h"
#include "util/Memory.h"

using namespace olvex;

namespace {

constexpr std::size_t kHostNameSize = 256;

struct PDLoggerVars {
    Text organization;
    Text product;
    Text component;
    Text client;
    Text server;
    Text serverFormat;
    Text productInstance;
    OvxObject *messageIdFormatter = nullptr;
};

// The texts by the name of property and event property, in the order in which events get them.
struct Field {
    const char *name;
    Text PDLoggerVars::*text;
};

constexpr Field kFields[] = {
    {"organization", &PDLoggerVars::organization},
    {"product", &PDLoggerVars::product},
    {"component", &PDLoggerVars::component},
    {"client", &PDLoggerVars::client},
    {"server", &PDLoggerVars::server},
    {"serverFormat", &PDLoggerVars::serverFormat},
    {"productInstance", &PDLoggerVars::productInstance},
};

PDLoggerVars *varsOf(const OvxObject *logger)
{
    return static_cast<PDLoggerVars *>(logger->variables);
}

Text hostName()
{
    char name[kHostNameSize];
    if (ok(CxSystemGetFQHostname(name, sizeof name))) return Text(BaxStringDup(name));
    report(OVX_LEVEL_WARN, Message::kNoHostName, "ovx_pdlogger");
    return nullptr;
}

void stamp(const PDLoggerVars &vars, OvxEvent *event)
{
    for (const Field &field : kFields) {
        const char *text = (vars.*field.text).get();
        if (text) OvxSetEventProp(event, field.name, text);
    }
}

} // namespace

void *OvxPDLoggerFAllocVars()
{
    auto *vars = Memory().make<PDLoggerVars>();
    if (!vars) return nullptr;
    vars->serverFormat.reset(BaxStringDup("IP"));
    vars->messageIdFormatter = ovxIntlGetObject("olvex.pdMsgIdFormatter", "ovx_xmlformatter");
    vars->server = hostName();
    return vars;
}

void OvxPDLoggerFFreeVars(void *variables)
{
    auto *vars = static_cast<PDLoggerVars *>(variables);
    if (!vars) return;
    ovxIntlReleaseObject(vars->messageIdFormatter);
    Memory().destroy(vars);
}

void OvxPDLoggerFCfgChange(OvxObject *logger, const char *name)
{
    if (!logger || !varsOf(logger) || !name) return;
    for (const Field &field : kFields) {
        if (BaxStringCmp(name, field.name) != 0) continue;
        (varsOf(logger)->*field.text).reset(ovxIntlGetObjProp(logger, name, nullptr));
        return;
    }
    OvxBasicLoggerFCfgChange(logger, name);
}

void OvxPDLoggerFLog(OvxObject *logger, OvxEvent *event)
{
    if (!logger || !event) return;
    const PDLoggerVars *vars = varsOf(logger);
    if (vars) stamp(*vars, event);
    OvxSetEventPropLong(event, "processId", static_cast<long>(CxProcessGetCurrentID()));
    OvxSetEventPropLong(event, "threadId", static_cast<long>(CxThreadGetCurrentID()));
    if (vars) ovxPDXMLFormatterCacheMessageID(vars->messageIdFormatter, event);
    OvxBasicObjectFLog(logger, event);
}

constinit const ClassSlots olvex::slots::ovx_pdlogger = {
    .allocVars = OvxPDLoggerFAllocVars,
    .freeVars = OvxPDLoggerFFreeVars,
    .cfgChange = OvxPDLoggerFCfgChange,
    .log = OvxPDLoggerFLog,
};
