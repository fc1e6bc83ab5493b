// Output that is held to a file in golden/; see golden/README.md.
#pragma once

#include <string>

// Compares the text with the golden file of that name, or makes it the golden file when ZQORB_RENEW_GOLDEN is set.
void expectGolden(const std::string& name, const std::string& text);
