// What the checks must find: work at load, and a program without protection.
#include <cstdlib>
#include <string>

const std::string atLoad = std::getenv("PATH") == nullptr ? "" : "PATH";

int main()
{
    return atLoad.empty() ? 1 : 0;
}
