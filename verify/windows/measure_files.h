// Measurements of files, folders, adapters and the registry. See measures.h for what each gives.
#pragma once

#include "answer.h"
#include "names.h"

#include <string>

namespace verify {

Answer longPath(const std::string& argument, const Names& names);
Answer temporaryFolderByVariable(const std::string& argument, const Names& names);
Answer linkOf(const std::string& argument, const Names& names);
Answer programsOfTheStore(const std::string& argument, const Names& names);
Answer growingFile(const std::string& argument, const Names& names);
Answer adapters(const std::string& argument, const Names& names);
Answer consoleText(const std::string& argument, const Names& names);
Answer registration(const std::string& argument, const Names& names);

} // namespace verify
