// What a program and its arguments cannot show: measured by functions, each under a name.
#pragma once

#include "answer.h"
#include "names.h"

#include <string>

namespace verify {

//   inherited-handles   how many of eight open handles a program gets
//   handle-list         what the system says to a list of handles that is "closed" or "doubled"
//   arguments           how many of 400 vectors arrive as they are
//   kept-pipe           how a run ends whose program has left a child with its streams
//   tree                whether a child ends with the program that is ended
//   command-line        what becomes of a command line of so many characters
//   bare-environment    whether a program starts with SystemRoot alone
//   long-path           whether a file with a long path is found
//   temporary-folder    what it is when TMP and TEMP differ
//   link                what a "symbolic" link or a "junction" is taken for
//   aliases             what the programs of the store are taken for
//   growing-file        the size of a file that another program writes
//   adapter             the names of adapters with WSL in them
//   registration        what the registry says of <name>
//   console-text        what the product makes of letters in the code page of consoles
//
// Throws what the services throw, and std::invalid_argument for another name.
Answer measure(const std::string& name, const std::string& argument, const Names& names);

} // namespace verify
