// What differs between the systems.
#pragma once

#include <filesystem>

// Standard output and error without line-end conversion from now on.
void makeStreamsBinary();

// The program's own file.
std::filesystem::path ownPath();
