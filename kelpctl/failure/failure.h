// A failure that kelpctl itself found.
#pragma once

#include <stdexcept>
#include <string>

namespace kelpctl {

// The key of its advice, and what it is about.
class Failure : public std::runtime_error {
public:
    explicit Failure(const std::string& identifier, std::string subject = {}, std::string cause = {})
        : std::runtime_error(identifier), subject_(std::move(subject)), cause_(std::move(cause))
    {
    }

    std::string identifier() const { return what(); }
    const std::string& subject() const noexcept { return subject_; }
    // The key of the cause's advice when it is known already.
    const std::string& cause() const noexcept { return cause_; }

private:
    std::string subject_;
    std::string cause_;
};

} // namespace kelpctl
