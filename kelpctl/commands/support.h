// The report that a user may send to support.
#pragma once

#include "failure/output.h"
#include "request/request.h"
#include "terminal/zip.h"

#include <vector>

namespace kelpctl {

// What support would ask for, each a file, without what must not be seen. The last one says what is in it.
std::vector<ZipEntry> reportEntries(const Context& context);

// Writes them into a new archive. Throws Failure("REPORT_NOT_WRITTEN").
Outcome report(const Context& context);

} // namespace kelpctl
