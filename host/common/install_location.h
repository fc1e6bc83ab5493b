// What the systems tell differently about where we are.
#pragma once

#include <string>

namespace foundation::core::path {

extern const char16_t nativeSeparator;

// Whether names of files that differ in these ASCII letters only name the same file.
bool sameInFileNames(char16_t left, char16_t right);

// The folder that this library was loaded from, in native form; empty when the system cannot tell.
std::u16string libraryFolder();

} // namespace foundation::core::path
