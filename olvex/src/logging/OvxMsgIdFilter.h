// The message-ID filter: events pass or are blocked by their identifiers, repeats may be held back.
// The filter's class functions, called with the API mutex held.
#pragma once

#include <olvex/MsgId.h>

#include "toolkit/OvxObject.h"

void *OvxMsgIdFilterFAllocVars();
void OvxMsgIdFilterFFreeVars(void *variables);
void OvxMsgIdFilterFCfgChange(OvxObject *filter, const char *name);
bool OvxMsgIdFilterFIsLoggable(OvxObject *filter, OvxEvent *event);
