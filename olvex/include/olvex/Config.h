/*
 * Configurations and the log manager. A configuration is a named set of text properties. Names are
 * dotted, and a configuration inherits what it does not set itself from the nearest configuration
 * above it: a.b.c from a.b, or else from a. The log manager holds them all while the toolkit is
 * open; before and after, its functions find nothing and create nothing. Setting a property here
 * changes no object that exists: objects take over their configuration when they are made and by
 * OvxLogMgrApplyCfg.
 */
#ifndef OLVEX_CONFIG_H
#define OLVEX_CONFIG_H

#include <olvex/Types.h>

OVX_BEGIN_DECLS

/** Makes a configuration of that name (copied) outside the log manager; yours to release. */
OVX_API OvxObjCfg *OvxAllocObjCfg(const char *name);

/** Adds a reference and returns the configuration; release it once more. */
OVX_API OvxObjCfg *OvxAcquireObjCfg(OvxObjCfg *cfg);

/** Gives a reference back; the last one frees the configuration. */
OVX_API void OvxReleaseObjCfg(OvxObjCfg *cfg);

/** The configuration's name, yours. */
OVX_API char *OvxObjCfgGetName(const OvxObjCfg *cfg);

/** Says whether a properties file created the configuration. */
OVX_API bool OvxObjCfgIsFromFile(const OvxObjCfg *cfg);

/** Marks the configuration as created by a properties file, or not. */
OVX_API void OvxObjCfgSetFromFile(OvxObjCfg *cfg, bool fromFile);

/**
 * The parent, yours to release; it is created when there is none of the parent's name. NULL for a
 * configuration without a parent.
 */
OVX_API OvxObjCfg *OvxObjCfgGetParent(const OvxObjCfg *cfg);

/** Makes `parent` the one to inherit from, by its name; its list of children stays as it is. */
OVX_API void OvxObjCfgSetParent(OvxObjCfg *cfg, const OvxObjCfg *parent);

/** Appends a child's name to the children of `cfg` and makes `cfg` the child's parent. */
OVX_API void OvxObjCfgAddChild(OvxObjCfg *cfg, OvxObjCfg *child);

/** Removes a child from a configuration that has children; the child then has no parent. */
OVX_API void OvxObjCfgRemChild(OvxObjCfg *cfg, OvxObjCfg *child);

/** Iterates over the children's names in the order in which they were added. */
OVX_API StringGroupNode *OvxObjCfgChildrenNames(const OvxObjCfg *cfg);

/** Iterates over the configuration's own properties in the order in which they were first set. */
OVX_API StringToStringMapNode *OvxObjCfgProperties(const OvxObjCfg *cfg);

/*
 * Properties. Getting one looks in the configuration and then in its ancestors, nearest first.
 * `found` (optional) says whether one of them has it, for the typed forms whether it converts.
 */

/** The value of a property, yours, or NULL. */
OVX_API char *OvxGetObjCfgProp(const OvxObjCfg *cfg, const char *name, bool *found);
/** The value of a property, yours, or NULL: another name of OvxGetObjCfgProp. */
OVX_API char *OvxGetInheritedObjCfgProp(const OvxObjCfg *cfg, const char *name, bool *found);
/** A property as a boolean. */
OVX_API bool OvxGetObjCfgPropBool(const OvxObjCfg *cfg, const char *name, bool *found);
/** A property as a 32-bit integer. */
OVX_API int32_t OvxGetObjCfgPropInt(const OvxObjCfg *cfg, const char *name, bool *found);
/** A property as a 64-bit integer. */
OVX_API int64_t OvxGetObjCfgPropLong(const OvxObjCfg *cfg, const char *name, bool *found);
/** A property as a float. */
OVX_API float OvxGetObjCfgPropFloat(const OvxObjCfg *cfg, const char *name, bool *found);
/** A property as a double. */
OVX_API double OvxGetObjCfgPropDouble(const OvxObjCfg *cfg, const char *name, bool *found);

/** Sets a property of the configuration itself; name and value are copied. */
OVX_API void OvxSetObjCfgProp(OvxObjCfg *cfg, const char *name, const char *value);
/** Sets a property to "true" or "false". */
OVX_API void OvxSetObjCfgPropBool(OvxObjCfg *cfg, const char *name, bool value);
/** Sets a property to the decimal text of a 32-bit integer. */
OVX_API void OvxSetObjCfgPropInt(OvxObjCfg *cfg, const char *name, int32_t value);
/** Sets a property to the decimal text of a 64-bit integer. */
OVX_API void OvxSetObjCfgPropLong(OvxObjCfg *cfg, const char *name, int64_t value);
/** Sets a property to a float in fixed notation, six digits. */
OVX_API void OvxSetObjCfgPropFloat(OvxObjCfg *cfg, const char *name, float value);
/** Sets a property to a double in fixed notation, six digits. */
OVX_API void OvxSetObjCfgPropDouble(OvxObjCfg *cfg, const char *name, double value);

/*
 * The log manager
 */

/**
 * Enters a configuration (kept) under its name, unless the name is taken. Its parent is the one
 * that was set, or else the nearest ancestor by name; it takes over those children of its parent
 * whose names lie below its own.
 */
OVX_API void OvxLogMgrAddCfg(OvxObjCfg *cfg);

/** Takes out the configuration of that name; its children become children of its parent. */
OVX_API void OvxLogMgrRemCfg(OvxObjCfg *cfg);

/** Takes the configuration out and enters it again, so that it finds its place anew. */
OVX_API void OvxLogMgrUpdateCfg(OvxObjCfg *cfg);

/** Iterates over the names of all configurations in the order in which they were added. */
OVX_API StringGroupNode *OvxLogMgrConfigNames(void);

/**
 * The configuration of that name, yours to release; an empty one is created and entered when there
 * is none. NULL for "/", the root of all names, which has no configuration.
 */
OVX_API OvxObjCfg *OvxLogMgrGetCfg(const char *name);

/** Says whether there is a configuration of that name; creates nothing. */
OVX_API bool OvxLogMgrHasCfg(const char *name);

/**
 * Sets the properties of the configuration `name` and its ancestors on an object, the outermost
 * ancestor's first, so that the nearest value stays. False when nothing can be applied.
 */
OVX_API bool OvxLogMgrApplyCfg(OvxObject *object, const char *name);

/**
 * Reads a properties file into the log manager: each key is a configuration's name, a dot and a
 * property's name. False when the file cannot be read to its end; what was read before stays.
 */
OVX_API bool OvxLogMgrReadProps(const char *path);

OVX_END_DECLS

#endif
