#include "archive/checksum.h"

#include "archive/paths.h"
#include "terminal/text.h"

#include "host/text.h"

#include <exception>
#include <fstream>
#include <sstream>
#include <system_error>

namespace kelpctl {
namespace {

constexpr std::size_t sumLength = 64;
constexpr std::streamsize longestFile = 64L * 1024;

std::string utf8(const std::filesystem::path& path)
{
    return foundation::core::text::cvt_ustring_utf8(path.u16string());
}

} // namespace

std::string sumFor(const std::string& name, const std::string& text)
{
    std::istringstream lines(text);
    std::string only;
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line);) {
        std::string sum = lowered(line.substr(0, sumLength));
        if (!isDigest(sum)) {
            continue;
        }
        // Behind the sum a blank, and a blank or an asterisk.
        std::string file = line.size() > sumLength + 2 ? line.substr(sumLength + 2) : std::string();
        file.erase(file.find_last_not_of('\r') + 1);
        if (fileName(file) == name) {
            return sum;
        }
        only = sum;
        ++count;
    }
    return count == 1 ? only : std::string();
}

std::optional<Checksum> checksumBeside(const std::filesystem::path& archive)
{
    try {
        std::filesystem::path file = archive;
        file += ".sha256";
        std::error_code error;
        if (!std::filesystem::is_regular_file(file, error)) {
            return std::nullopt;
        }
        std::ifstream stream(file, std::ios::binary);
        std::string text(longestFile, '\0');
        stream.read(text.data(), longestFile);
        text.resize(static_cast<std::size_t>(stream.gcount()));
        return Checksum{utf8(file), sumFor(utf8(archive.filename()), text), {}};
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace kelpctl
