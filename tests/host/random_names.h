// The system's source of random bits, as a test has it.
#pragma once

#include <cstddef>
#include <vector>

// What the source gives, from the front; when it has less than is asked for, the call fails.
extern std::vector<unsigned char> givenBytes;

// Takes so many of them; false when there are not enough.
bool takeGivenBytes(unsigned char* bytes, std::size_t size);
