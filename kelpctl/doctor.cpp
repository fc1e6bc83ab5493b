#include "doctor.h"

namespace kelpctl {

Outcome doctor(const Context& /*context*/)
{
    return {};
}

} // namespace kelpctl
