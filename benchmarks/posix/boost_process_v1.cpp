#include "peers.h"

#include <future>

#include <boost/asio/io_context.hpp>
#include <boost/process.hpp>

namespace benchmarks {

Captured runBoostProcessV1(const Arguments& arguments, const Sizes& /*expected*/)
{
    namespace process = boost::process;
    boost::asio::io_context context;
    std::future<std::string> output;
    std::future<std::string> error;
    process::child child(process::exe = arguments.front(),
                         process::args = Arguments(arguments.begin() + 1, arguments.end()),
                         process::std_in<process::null, process::std_out> output, process::std_err > error, context);
    context.run();
    child.wait();
    return {child.exit_code(), {output.get().size(), error.get().size()}};
}

} // namespace benchmarks
