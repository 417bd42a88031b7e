// The problem-determination XML formatter, the pieces of its records, and the finding of an event's
// identifier in its text. Called with the API mutex held.
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
// Gives an event that has no identifier the one its bound text begins with, or the empty one.
void ovxPDXMLFormatterCacheMessageID(OvxObject *formatter, OvxEvent *event);

namespace olvex {

// Appends the event's record; false when the formatter cannot format.
bool appendXmlRecord(OvxObject *formatter, OvxEvent *event, CxStringBuff *buffer);

// Gives back the buffer that texts are bound into.
void discardXmlText();

} // namespace olvex
