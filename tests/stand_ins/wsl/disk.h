#pragma once

#include <filesystem>
#include <string>

namespace stand_in {

// Waits for as long as nothing is to be seen of a disk.
void waitForDisk();

// Lets the empty disk grow as the environment says, over the time that an import takes. What it then says of a disk that
// has no room is empty when there was enough.
std::string growDisk(const std::filesystem::path& disk);

// In bsdtar's words.
inline constexpr char noSpace[] = "bsdtar: Write failed: No space left on device\n";

} // namespace stand_in
