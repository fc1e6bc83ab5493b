// Notes the programs that this process starts, so that the same programs can be started again with nothing around them.
#pragma once

#include "contenders.h"

#include <functional>
#include <memory>
#include <vector>

namespace benchmarks {

// A program as it was started: its path, arguments, environment and folder.
class RecordedProcess {
public:
    virtual ~RecordedProcess() = default;
    // Runs it again, as the floor does.
    virtual Captured run() const = 0;
};

// The programs that `work` starts on this thread, in order.
std::vector<std::unique_ptr<RecordedProcess>> processesStartedBy(const std::function<void()>& work);

} // namespace benchmarks
