// See Tally.h.
#include "Tally.h"

#include <set>

namespace tools {

namespace {

long reports = 0;
long records = 0;

extern "C" void countReport(OvxObject *, OvxEvent *)
{
    ++reports;
}
extern "C" void countRecord(OvxObject *, OvxEvent *)
{
    ++records;
}

// The one object of a handler class that only counts.
OvxObject *makeCounter(const char *name, OvxFProcess count)
{
    OvxAddHandlerClass(name, nullptr, nullptr, nullptr, nullptr, count, nullptr, nullptr);
    return OvxGetObject(name, name);
}

void addCounter(OvxObject *object, OvxObject *counter)
{
    OvxAddListener(object, counter);
    OvxReleaseObject(counter);
}

bool canWrite(OvxObject *object)
{
    OvxObject *formatter = OvxHandlerGetFormatter(object);
    OvxReleaseObject(formatter);
    return formatter != nullptr;
}

// Listens to every handler below `object`; handlers pass an event on once they have written it.
void watchBelow(OvxObject *object, OvxObject *counter, std::set<OvxObject *> &seen)
{
    if (!seen.insert(object).second) return;
    ListenerGroupNode *place = OvxGetListeners(object);
    for (; OvxListenerGroupIterHasNext(place); place = OvxListenerGroupIterNext(place)) {
        OvxObject *listener = OvxListenerGroupIterGet(place);
        if (listener != counter) watchBelow(listener, counter, seen);
        OvxReleaseObject(listener);
    }
    if (canWrite(object)) OvxAddListener(object, counter);
}

} // namespace

void watchReports()
{
    OvxObject *errorLogger = OvxGetObject("olvex.errorLogger", nullptr);
    addCounter(errorLogger, makeCounter("olvex.command.reports", countReport));
    OvxReleaseObject(errorLogger);
}

long reportCount()
{
    return reports;
}

void watchRecords(OvxObject *logger)
{
    OvxObject *counter = makeCounter("olvex.command.records", countRecord);
    std::set<OvxObject *> seen;
    watchBelow(logger, counter, seen);
    OvxReleaseObject(counter);
}

long recordCount()
{
    return records;
}

} // namespace tools
