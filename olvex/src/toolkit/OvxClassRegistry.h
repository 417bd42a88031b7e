// The registry of classes: the map from names to classes, one list of names for each category, and
// the table of the built-in classes. Used with the API mutex held.
#pragma once

#include "toolkit/OvxToolkit.h"

// Frees every class and the registry; the built-in ones are registered anew when next needed.
void ovxFreeObjClasses();

// What the class map does with its values: they belong to the registry.
inline OvxObjClass *ovxReturnObjClass(OvxObjClass *cls)
{
    return cls;
}
inline void ovxIgnoreObjClass(OvxObjClass *) {}
