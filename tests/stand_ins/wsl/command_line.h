#pragma once

#include <string>
#include <string_view>
#include <vector>

// Windows hands a program one raw command line; how it is split is the program's own affair.
namespace stand_in {

// The raw command line that a Windows caller with standard quoting would have made of these arguments.
std::string joinWindows(const std::vector<std::string>& arguments);

// What follows the program's name, which ends at the first blank outside quotes.
std::string_view afterProgramName(std::string_view line);

// Takes the next word off the front: words end at a blank or a tab, quotes mean nothing. Empty at the end.
std::string_view takeWord(std::string_view& rest);

// The same for a value that may stand in quotes.
std::string_view takeQuotedValue(std::string_view& rest);

std::string_view withoutLeadingBlanks(std::string_view text);

// Splits by the rules of CommandLineToArgvW.
std::vector<std::string> splitArguments(std::string_view text);

// Splits by the rules of CommandLineToArgvW; the first word follows its rule for a program's name.
std::vector<std::string> splitProgramAndArguments(std::string_view text);

} // namespace stand_in
