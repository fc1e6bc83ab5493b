// The ways of running a program that are compared with each other.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace benchmarks {

// What every contender has to bring back.
struct Captured {
    std::int32_t status = 0;
    std::string output;
    std::string error;
};

// A program by its path, and its arguments.
using Arguments = std::vector<std::string>;

struct Contender {
    std::string name;
    // Runs a program, captures both of its streams and waits for its end. Throws when that fails. Any thread.
    Captured (*run)(const Arguments&);
};

// The least that the system asks for: start, read both streams until they end, wait.
Captured runFloor(const Arguments& arguments);

// The product's process service.
Captured runService(const Arguments& arguments);

// The floor, the product's service, and the libraries at hand on this system.
std::vector<Contender> contenders();

// The names of the first two.
inline constexpr char floorName[] = "floor";
inline constexpr char serviceName[] = "this service";

} // namespace benchmarks
