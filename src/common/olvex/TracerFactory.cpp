// Holds the table of functions of what all factories share.
#include <olvex/trace/TracerFactory.h>

TracerFactory::~TracerFactory() = default;
