#pragma once

#include <string>
#include <vector>

#include <windows.h>

namespace bridge {

// The name under which this program was started, in capitals and without ".exe".
std::string programName();

// The Linux program that WINE_BRIDGE_NAME tells; empty where it tells none.
std::string backingProgram(const std::string& name);

// The arguments after the program's own name, with absolute Windows paths turned into Unix ones.
std::vector<std::string> linuxArguments(const std::string& program);

// "NAME=VALUE" each: what the Windows caller set, except for the few names that mean different things on both sides.
std::vector<std::string> linuxEnvironment();

std::string currentFolder();

// Copies what the caller sends, until it ends, to a descriptor; then closes that.
void relayInput(int descriptor);

// Copies a descriptor's bytes, as they are, to a standard handle. Nothing waits for the reader's end of the other
// stream.
HANDLE relayOutput(int descriptor, DWORD standardHandle);

// After the program's end: waits until all that it wrote is copied. A process that it left behind may hold the stream
// open for longer; nobody waits for that one.
void finishRelay(HANDLE relay);

} // namespace bridge
