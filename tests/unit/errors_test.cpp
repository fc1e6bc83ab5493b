// The five errors of the catalogue.
#include "host_fixture.h"

#include "frame.h"

#include <boost/exception/exception.hpp>

#include <memory>

namespace {

using namespace fake;
using namespace orb::container_support;
using namespace foundation::core::except;

template <class ID>
using Error = Exception<ID, std::exception, void>;

template <class ID>
void throwIt(const Arguments& arguments)
{
    if (arguments.empty()) {
        orb::lvm::detail::throwError(ID{});
    }
    if (arguments.size() == 1) {
        orb::lvm::detail::throwError(ID{}, arguments[0]);
    }
    if (arguments.size() == 2) {
        orb::lvm::detail::throwError(ID{}, arguments[0], arguments[1]);
    }
    orb::lvm::detail::throwError(ID{}, arguments.at(0), arguments.at(1), arguments.at(2));
}

// An error, what names it, and how many arguments it has.
template <class Tag, int Count>
struct Case {
    using ID = Tag;

    static Arguments arguments()
    {
        Arguments all = {"C:\\first \xC3\xA4", "", "third\nline"};
        all.resize(Count);
        return all;
    }
};

using Cases = testing::Types<Case<DOCKER_NOT_AVAILABLE, 0>, Case<IMAGE_NOT_EXIST, 1>, Case<TAR_FILE_LOAD_ERROR, 3>,
                             Case<TAR_FILE_NOT_AVAILABLE, 1>, Case<WSL_CANNOT_IMPORT_TAR_FILE, 2>>;

template <class ErrorCase>
class Errors : public testing::Test {
protected:
    static void throwCase() { throwIt<typename ErrorCase::ID>(ErrorCase::arguments()); }

    // The error has this type exactly, and says this.
    static void expectCase(const IMsgIDException& found)
    {
        const auto* error = dynamic_cast<const Error<typename ErrorCase::ID>*>(&found);
        ASSERT_NE(error, nullptr);
        EXPECT_EQ(typeid(found), typeid(Error<typename ErrorCase::ID>));
        EXPECT_EQ(error->message().catalogue, "orb:container_support");
        EXPECT_EQ(error->message().identifier, ErrorCase::ID::identifier);
        Arguments arguments;
        for (const auto& argument : error->message().arguments) {
            arguments.push_back(argument.text());
        }
        EXPECT_EQ(arguments, ErrorCase::arguments());
        EXPECT_EQ(std::string(error->what()), "orb:container_support:" + error->message().identifier);
        EXPECT_STREQ(error->what(), error->description());
        EXPECT_EQ(error->userText(), "text of " + error->message().identifier);
    }

    // Throws the case's error, catches it as `Base`, and checks it.
    template <class Base>
    static void expectCaughtAs()
    {
        try {
            throwCase();
            ADD_FAILURE() << "no error";
        } catch (const Base& error) {
            expectCase(dynamic_cast<const IMsgIDException&>(error));
        }
    }
};

class CaseName {
public:
    template <class ErrorCase>
    static std::string GetName(int)
    {
        return ErrorCase::ID::identifier;
    }
};

TYPED_TEST_SUITE(Errors, Cases, CaseName);

TYPED_TEST(Errors, CanBeCaughtAsEachOfTheirBases)
{
    this->template expectCaughtAs<Error<typename TypeParam::ID>>();
    this->template expectCaughtAs<IMsgIDException>();
    this->template expectCaughtAs<IUserException>();
    this->template expectCaughtAs<IException>();
    this->template expectCaughtAs<boost::exception_detail::clone_base>();
    this->template expectCaughtAs<boost::exception>();
    this->template expectCaughtAs<std::exception>();
}

TYPED_TEST(Errors, ACloneRethrowsAsItsExactType)
{
    std::unique_ptr<const boost::exception_detail::clone_base> clone;
    try {
        this->throwCase();
    } catch (const boost::exception_detail::clone_base& error) {
        clone.reset(error.clone());
        EXPECT_NE(clone.get(), &error);
    }
    ASSERT_NE(clone, nullptr);
    try {
        clone->rethrow();
        ADD_FAILURE() << "no error";
    } catch (const Error<typename TypeParam::ID>& error) {
        this->expectCase(error);
    }
}

TEST(ErrorIdentifiers, AreThoseOfTheCatalogue)
{
    EXPECT_STREQ(catalogue, "orb:container_support");
    EXPECT_STREQ(DOCKER_NOT_AVAILABLE::identifier, "DOCKER_NOT_AVAILABLE");
    EXPECT_STREQ(IMAGE_NOT_EXIST::identifier, "IMAGE_NOT_EXIST");
    EXPECT_STREQ(TAR_FILE_LOAD_ERROR::identifier, "TAR_FILE_LOAD_ERROR");
    EXPECT_STREQ(TAR_FILE_NOT_AVAILABLE::identifier, "TAR_FILE_NOT_AVAILABLE");
    EXPECT_STREQ(WSL_CANNOT_IMPORT_TAR_FILE::identifier, "WSL_CANNOT_IMPORT_TAR_FILE");
}

} // namespace
