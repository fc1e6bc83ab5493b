// Answers to what the command line has no meaning for, with the word that was probably meant.
#pragma once

#include <string>
#include <vector>

namespace kelpctl {

std::string noSuchCommand(const std::string& word);

// `word` stands where nothing may: behind `command`, empty for none, which takes `flags`.
std::string unexpected(const std::string& command, const std::string& word, const std::vector<std::string>& flags);

} // namespace kelpctl
