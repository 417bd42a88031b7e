// The log manager: all configurations by name, and their tree. The toolkit opens and closes it; the
// properties reader fills it; objects take their configuration from it. All under the API mutex.
// While it is not open it finds nothing and creates nothing.
#pragma once

#include <olvex/Config.h>

void ovxInitLogMgr();
// Releases every configuration; what others hold lives on outside.
void ovxCloseLogMgr();

void ovxIntlLogMgrAddCfg(OvxObjCfg *cfg);
void ovxIntlLogMgrRemCfg(OvxObjCfg *cfg);
void ovxIntlLogMgrUpdateCfg(OvxObjCfg *cfg);
OvxObjCfg *ovxIntlLogMgrGetCfg(const char *name);
bool ovxIntlLogMgrHasCfg(const char *name);
bool ovxIntlLogMgrApplyCfg(OvxObject *object, const char *name);

// The name of the parent, a new string: the one that was set, or else the nearest configuration
// above by name, which then is the parent, or "/" when there is none.
char *ovxLogMgrGetParentConfigName(OvxObjCfg *cfg);

// Stores a property that a file gives; creates and marks the configuration when it is new. False
// for an empty configuration or property name and when there is no configuration to be had.
bool ovxLogMgrAddCfgFromFile(const char *configName, const char *propertyName, const char *value);
