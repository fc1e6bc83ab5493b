// A program that prints what the files beside it say: NAME.stdout and NAME.stderr, and ends with the number in
// NAME.status. NAME is the program's own file name.
#include "scripted.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

void print(const std::filesystem::path& file, std::FILE* stream)
{
    std::ifstream input(file, std::ios::binary);
    const std::string content{std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
    std::fwrite(content.data(), 1, content.size(), stream);
    std::fflush(stream);
}

std::filesystem::path withEnding(std::filesystem::path path, const char* ending)
{
    path += ending;
    return path;
}

} // namespace

int main()
{
    makeStreamsBinary();
    const std::filesystem::path self = ownPath();
    print(withEnding(self, ".stdout"), stdout);
    print(withEnding(self, ".stderr"), stderr);
    int status = 0;
    std::ifstream(withEnding(self, ".status")) >> status;
    return status;
}
