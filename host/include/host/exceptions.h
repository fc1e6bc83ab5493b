// Exceptions that carry a message identifier to the user.
//
// A handler may catch them as IMsgIDException, IUserException or IException, as boost::exception, as std::exception, or
// as their exact type. They support Boost's clone-and-rethrow protocol, so boost::current_exception() keeps the exact
// type.
#pragma once

#include "host/export.h"
#include "host/messages.h"

#include <boost/exception/exception.hpp>

#include <memory>
#include <string>
#include <utility>

namespace foundation::core::except {

// Every exception of the host product.
class KORVANE_HOST_API IException {
public:
    virtual ~IException();
    // Full English text with the identifier, for logs. Valid as long as the exception.
    virtual const char* description() const noexcept = 0;
};

// An exception that the user is meant to see.
class KORVANE_HOST_API IUserException : public IException {
public:
    ~IUserException() override;
    // What to show: the catalogue's text in the configured language, UTF-8.
    virtual std::string userText() const = 0;
};

// A user exception that a message identifier names.
class KORVANE_HOST_API IMsgIDException : public IUserException {
public:
    ~IMsgIDException() override;
    virtual const message::Message& message() const noexcept = 0;
};

// "<catalogue>:<identifier>: <English text>".
KORVANE_HOST_API std::string describe(const message::Message& message);

// The exception for one identifier. `ID` is a tag type that makes the type its own; `Base` is the standard exception it
// also is. `Data` is reserved for exceptions that carry a value.
template <class ID, class Base, class Data>
class Exception;

template <class ID, class Base>
class Exception<ID, Base, void>
    : public IMsgIDException, public boost::exception_detail::clone_base, public boost::exception, public Base {
public:
    explicit Exception(message::Message message) : content_(std::make_shared<const Content>(std::move(message))) {}

    // A copy on the heap, the caller's to delete. It may go to another thread: Boost's error infos are copied too.
    const boost::exception_detail::clone_base* clone() const override { return new Exception(*this, Apart{}); }
    // Throws such a copy as its exact type.
    // NOLINTNEXTLINE(cert-err60-cpp): its copies do not throw, but boost::exception does not say so
    [[noreturn]] void rethrow() const override { throw Exception(*this, Apart{}); }

    const char* what() const noexcept override { return description(); }
    const char* description() const noexcept override { return content_->description.c_str(); }
    std::string userText() const override { return message::localisedText(content_->message); }
    const message::Message& message() const noexcept override { return content_->message; }

private:
    // The copies that a throw makes share the error infos, and count their owners without regard to threads.
    struct Apart {};
    Exception(const Exception& other, Apart /*from the original*/) : Base(other), content_(other.content_)
    {
        boost::exception_detail::copy_boost_exception(this, &other);
    }

    struct Content {
        explicit Content(message::Message given) : message(std::move(given)), description(describe(message)) {}
        message::Message message;
        std::string description;
    };
    // Shared, so that copying an exception while it is thrown cannot fail.
    std::shared_ptr<const Content> content_;
};

} // namespace foundation::core::except
