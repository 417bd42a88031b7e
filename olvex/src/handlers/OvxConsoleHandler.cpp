// The console handlers: events as text on standard output or standard error. Called with the API
// mutex held. What is written goes through the C stream and is not flushed here.
#include "handlers/OvxHandler.h"

#include <cstdio>

using namespace olvex;

namespace {

struct ConsoleVars {
    bool open;
};

ConsoleVars *varsOf(const OvxObject *handler)
{
    return handler ? static_cast<ConsoleVars *>(handler->variables) : nullptr;
}

// The stream follows from what the class does with an event.
FILE *streamOf(const OvxObject *handler)
{
    return handler->cls->slots.process == OvxStderrHandlerFProcess ? stderr : stdout;
}

void process(OvxObject *handler, OvxEvent *event, FILE *stream)
{
    if (!event || !ovxIntlIsObjectEnabled(handler) || !varsOf(handler)) return;
    if (!varsOf(handler)->open && handler->cls->slots.open) handler->cls->slots.open(handler);
    {
        const EventText text(handler, event);
        if (text.get()) ovxI18PrintUTF8AsLocal(stream, text.get());
    }
    OvxBasicObjectFLog(handler, event);
}

} // namespace

void *OvxConsoleHandlerFAllocVars(void)
{
    return Memory().make<ConsoleVars>();
}

void OvxConsoleHandlerFFreeVars(void *variables)
{
    BaxMemoryFree(variables);
}

void OvxConsoleHandlerFProcess(OvxObject *handler, OvxEvent *event)
{
    process(handler, event, stdout);
}

void OvxStderrHandlerFProcess(OvxObject *handler, OvxEvent *event)
{
    process(handler, event, stderr);
}

void OvxConsoleHandlerFOpen(OvxObject *handler)
{
    ConsoleVars *vars = varsOf(handler);
    if (!vars || vars->open) return;
    const Text header(ovxIntlHandlerGetFmtHeader(handler));
    if (header) ovxI18PrintUTF8AsLocal(streamOf(handler), header.get());
    vars->open = true;
}

void OvxConsoleHandlerFClose(OvxObject *handler)
{
    ConsoleVars *vars = varsOf(handler);
    if (!vars || !vars->open) return;
    const Text trailer(ovxIntlHandlerGetFmtTrailer(handler));
    if (trailer) ovxI18PrintUTF8AsLocal(streamOf(handler), trailer.get());
    vars->open = false;
}

constinit const ClassSlots olvex::slots::ovx_consolehandler = {
    .allocVars = OvxConsoleHandlerFAllocVars,
    .freeVars = OvxConsoleHandlerFFreeVars,
    .cfgChange = OvxBasicHandlerFCfgChange,
    .process = OvxConsoleHandlerFProcess,
    .open = OvxConsoleHandlerFOpen,
    .close = OvxConsoleHandlerFClose,
    .passesOnLast = true,
};

constinit const ClassSlots olvex::slots::ovx_stderrhandler = {
    .allocVars = OvxConsoleHandlerFAllocVars,
    .freeVars = OvxConsoleHandlerFFreeVars,
    .cfgChange = OvxBasicHandlerFCfgChange,
    .process = OvxStderrHandlerFProcess,
    .open = OvxConsoleHandlerFOpen,
    .close = OvxConsoleHandlerFClose,
    .passesOnLast = true,
};
