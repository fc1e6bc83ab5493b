// Docker's engine, and the image and the container that it has.
#pragma once

#include "doctor/check.h"

namespace kelpctl {

std::span<const Check> dockerChecks();

// The chosen image, null when there is none.
const DockerImage* expectedImage(const Examination& found);

Presence presenceInDocker(const Examination& found);

} // namespace kelpctl
