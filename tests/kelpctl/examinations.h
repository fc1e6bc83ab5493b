// Examinations of computers on which all is well, for tests to break in one place.
#pragma once

#include "doctor/examination.h"

#include <cstdint>
#include <string>
#include <vector>

// A distribution that runs, or an image whose container runs; an archive that could be used.
kelpctl::Examination goodWsl();
kelpctl::Examination goodDocker();

kelpctl::Run answered(const std::vector<std::string>& arguments, const std::string& output);
kelpctl::Run failed(const std::vector<std::string>& arguments, std::int32_t status, const std::string& output);
kelpctl::Run timedOut(const std::vector<std::string>& arguments);
