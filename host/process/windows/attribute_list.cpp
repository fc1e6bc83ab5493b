#include "attribute_list.h"

#include "system_error.h"

namespace orb::process::detail {

using foundation::core::system::lastError;

namespace {

constexpr const char* failureText = "cannot prepare the start of a program";

} // namespace

AttributeList::AttributeList(std::span<const Attribute> attributes)
{
    const auto count = static_cast<DWORD>(attributes.size());
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, count, 0, &size);
    memory_.resize(size);
    if (InitializeProcThreadAttributeList(get(), count, 0, &size) == FALSE) {
        throw lastError(failureText);
    }
    for (const Attribute& attribute : attributes) {
        if (UpdateProcThreadAttribute(get(), 0, attribute.key, attribute.value, attribute.size, nullptr, nullptr) ==
            FALSE) {
            const auto failure = lastError(failureText);
            DeleteProcThreadAttributeList(get());
            throw failure; // NOLINT(misc-throw-by-value-catch-by-reference): the list's end may change the error
        }
    }
}

AttributeList::~AttributeList()
{
    DeleteProcThreadAttributeList(get());
}

} // namespace orb::process::detail
