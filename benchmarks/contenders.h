// The ways of running a program that are compared with each other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace benchmarks {

// The bytes on each stream.
struct Sizes {
    std::size_t output = 0;
    std::size_t error = 0;

    bool operator==(const Sizes&) const = default;
};

// Of what benchmark_child prints in that mode.
inline Sizes sizesOf(std::string_view mode, std::size_t size)
{
    return mode == "two" ? Sizes{size / 2, size / 2} : Sizes{size, 0};
}

// What every contender has to bring back, having had all of it in memory at once.
struct Captured {
    std::int32_t status = 0;
    Sizes sizes;
};

// A program by its path, and its arguments.
using Arguments = std::vector<std::string>;

struct Contender {
    std::string name;
    // Runs a program, captures both of its streams and waits for its end. Throws when that fails. Any thread. What will
    // come is for the floor alone to know.
    Captured (*run)(const Arguments& arguments, const Sizes& expected);
};

// The least that the system asks for: start, read both streams to where they stay, wait. No library can do with as
// little, since it is not told how much will come.
Captured runFloor(const Arguments& arguments, const Sizes& expected = {});

// The product's process service.
Captured runService(const Arguments& arguments, const Sizes& expected);

// The floor, the product's service, and the libraries at hand on this system.
std::vector<Contender> contenders();

// The names of the first two.
inline constexpr char floorName[] = "floor";
inline constexpr char serviceName[] = "this service";

} // namespace benchmarks
