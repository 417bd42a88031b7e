// Where the files are that an installation brings for the library to read: catalogs and code-set
// tables. No locks; the place is found once.
#pragma once

namespace olvex::ucv {

// The directory of installed data ("/usr/share/olvex"), found relative to the library's own file,
// so that an installed tree can be moved. Borrowed for the life of the process; "" when the place
// of the library cannot be told.
const char *installedDirectory();

} // namespace olvex::ucv
