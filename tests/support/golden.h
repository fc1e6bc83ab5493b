// Output that is held to a file of a folder "golden"; the README.md beside the file tells how to renew it.
#pragma once

#include <filesystem>
#include <string>

// Compares the text with the golden file, or makes it the golden file when ZQORB_RENEW_GOLDEN is set; a test fails that
// is to do so in continuous integration, where CI is set.
void expectGolden(const std::filesystem::path& file, const std::string& text);
