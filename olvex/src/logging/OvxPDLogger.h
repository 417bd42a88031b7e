// The problem-determination logger: stamps each event with what it knows of product and process.
// Called with the API mutex held.
#pragma once

#include "toolkit/OvxObject.h"

void *OvxPDLoggerFAllocVars();
void OvxPDLoggerFFreeVars(void *variables);
void OvxPDLoggerFCfgChange(OvxObject *logger, const char *name);
void OvxPDLoggerFLog(OvxObject *logger, OvxEvent *event);
