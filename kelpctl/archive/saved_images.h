// Saved images, by the lists and descriptions that lie in the archive.
#pragma once

#include "archive/facts.h"

#include <map>
#include <string>

namespace kelpctl {

// Texts by their paths inside the archive.
using Documents = std::map<std::string, std::string>;

// What the documents tell, those that are missing or broken left out.
SavedImages savedImages(const Documents& documents);

// The last part of an image's name, without its tag: the library compares nothing else. "hub" of "registry:5000/a/hub:1".
std::string repositoryOf(const std::string& name);

} // namespace kelpctl
