// Measurements of how programs start, run and end. See measures.h for what each gives.
#pragma once

#include "answer.h"
#include "names.h"

#include <string>

namespace verify {

Answer inheritedHandles(const std::string& argument, const Names& names);
Answer handleList(const std::string& argument, const Names& names);
Answer oddArguments(const std::string& argument, const Names& names);
Answer keptPipe(const std::string& argument, const Names& names);
Answer endedTree(const std::string& argument, const Names& names);
Answer longCommandLine(const std::string& argument, const Names& names);
Answer bareEnvironment(const std::string& argument, const Names& names);

} // namespace verify
