#include "name_order.h"

#include <windows.h>

namespace orb::process::detail {

bool BeforeWithoutCase::operator()(const std::wstring& left, const std::wstring& right) const noexcept
{
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_LESS_THAN;
}

} // namespace orb::process::detail
