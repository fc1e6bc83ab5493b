#include "peers.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/readable_pipe.hpp>
#include <boost/process/v2/process.hpp>
#include <boost/process/v2/stdio.hpp>

namespace benchmarks {

Captured runBoostProcessV2(const Arguments& arguments, const Sizes& /*expected*/)
{
    namespace process = boost::process::v2;
    boost::asio::io_context context;
    boost::asio::readable_pipe output(context);
    boost::asio::readable_pipe error(context);
    process::process child(context, arguments.front(), Arguments(arguments.begin() + 1, arguments.end()),
                           process::process_stdio{nullptr, output, error});
    std::string outputText;
    std::string errorText;
    const auto atEnd = [](const boost::system::error_code&, std::size_t) {};
    boost::asio::async_read(output, boost::asio::dynamic_buffer(outputText), atEnd);
    boost::asio::async_read(error, boost::asio::dynamic_buffer(errorText), atEnd);
    context.run();
    return {child.wait(), {outputText.size(), errorText.size()}};
}

} // namespace benchmarks
