// An archive's facts as a table, and for programs.
#pragma once

#include "archive/facts.h"
#include "archive/judgement.h"
#include "terminal/table.h"

#include <boost/json/object.hpp>

#include <string>

namespace kelpctl {

// "root file system", "saved image", "nothing of use", or "not known"; the same word in the table and for programs.
const char* contentName(const ArchiveFacts& facts);

// "whole", for programs.
const char* extentName(Extent extent);

// The rows about the archive itself, what it holds, and the room that it needs.
void printArchive(const ArchiveFacts& facts, const std::string& name, Purpose purpose, const Volume& volume,
                  TableLines& table);

// docs/use/kelpctl.schema.json describes it.
boost::json::object archiveObject(const ArchiveFacts& facts, const std::string& name, Purpose purpose,
                                  const Volume& volume);

} // namespace kelpctl
