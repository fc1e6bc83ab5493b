#include "host/exceptions.h"

namespace foundation::core::except {

// Defined here, so that each type has one home and handlers in any module recognise it.
IException::~IException() = default;
IUserException::~IUserException() = default;
IMsgIDException::~IMsgIDException() = default;

std::string describe(const message::Message& message)
{
    return message.catalogue + ":" + message.identifier + ": " + message::englishText(message);
}

} // namespace foundation::core::except
