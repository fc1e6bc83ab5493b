// Boost.JSON as a source; cmake/third_party.cmake says why.
#include <boost/json/src.hpp>
