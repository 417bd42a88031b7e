// The problem-determination XML formatter and the pieces of its records. Called with the API mutex
// held.
#pragma once

#include <olvex/StringBuff.h>

#include "toolkit/OvxObject.h"

namespace olvex {
class ProblemProps;
}

void *OvxPDXMLFormatterFAllocVars();
void OvxPDXMLFormatterFFreeVars(void *variables);
void OvxPDXMLFormatterFCfgChange(OvxObject *formatter, const char *name);
char *OvxPDXMLFormatterFFormat(OvxObject *formatter, OvxEvent *event);
char *OvxPDXMLFormatterFGetHeader(OvxObject *formatter);
char *OvxPDXMLFormatterFGetTrailer(OvxObject *formatter);

// Whether a property has no element of its own.
bool ovxPDXMLCheckKey(const char *key);
void ovxPDXMLEmitProductInfo(CxStringBuff *buffer, const olvex::ProblemProps &props,
                             bool withComponent, bool withProduct, bool withProductId,
                             bool withServer);
void ovxPDXMLEmitLevel(CxStringBuff *buffer, int level);
// True when there is a source file and an element was written.
bool ovxPDXMLEmitSource(CxStringBuff *buffer, const olvex::ProblemProps &props);
void ovxPDXMLEmitTranslationInfo(CxStringBuff *buffer, const OvxEvent *event, const char *catalog);

// The identifier at the start of a text; yours, none without one.
char *ovxPDXMLGetMessageID(const char *text);

namespace olvex {

// Appends the event's record; false when the formatter cannot format.
bool appendXmlRecord(OvxObject *formatter, OvxEvent *event, CxStringBuff *buffer);

} // namespace olvex
