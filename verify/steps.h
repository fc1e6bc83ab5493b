// Does what a fact's steps say.
#pragma once

#include "answer.h"
#include "expectation.h"
#include "own.h"

#include <boost/json/object.hpp>

namespace verify {

// One step and what came of it.
struct Step {
    Answer answer;
    Encoding encoding = Encoding::bytes;
    // The command line, or the deed, with placeholders.
    std::string what;
};

class Steps {
public:
    Steps(OwnThings& own, const Names& names) : own_(own), names_(names) {}

    // A step is one of
    //
    //   run      a program and its arguments; with: variables, path: folders for it in front of PATH, in: its folder,
    //            input: so many bytes, limit: seconds, end-after: seconds, as: how its output is encoded
    //   write    a file; text     folder   is made     copy     a file; to, size: so many bytes of it
    //   remove   a file           look     at a path: "file", "folder" or "nothing"
    //   wait     seconds          measure  by a function of measures.h; argument
    //   answer   "import" or "image": what came of making the run's own
    //   show     a program with the console's own streams; ask: a question, whose answer "y" is as claimed
    //
    // Throws what the file system throws, and std::invalid_argument for a step that nobody knows.
    Step perform(const boost::json::object& step);

private:
    Answer run(const boost::json::object& step) const;
    Answer deed(const boost::json::object& step, const std::string& kind);

    OwnThings& own_;
    const Names& names_;
};

} // namespace verify
