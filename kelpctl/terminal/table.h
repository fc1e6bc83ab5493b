// Lines of a table with sections: a mark, a label and a value.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kelpctl {

enum class Mark { none, ok, note, problem };

class TableLines {
public:
    explicit TableLines(bool colours) : colours_(colours) {}

    void section(const std::string& title);
    // Control characters in the value are written out.
    void row(Mark mark, const std::string& label, const std::string& value);
    // Further values of the row above.
    void more(const std::string& value) { row(Mark::none, {}, value); }
    // A mark and text as broad as the table, broken where it is too long. More texts stand below.
    void text(Mark mark, const std::string& text);

    std::vector<std::string> take() { return std::move(lines_); }

private:
    std::string markColumn(Mark mark) const;

    bool colours_;
    std::vector<std::string> lines_;
};

// The text broken at blanks into lines of at most that many characters, where its words allow.
std::vector<std::string> wrapped(const std::string& text, std::size_t columns);

} // namespace kelpctl
