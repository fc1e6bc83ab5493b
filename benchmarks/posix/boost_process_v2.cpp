#include "peers.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/readable_pipe.hpp>
#include <boost/process/v2/process.hpp>
#include <boost/process/v2/stdio.hpp>

namespace benchmarks {

Captured runBoostProcessV2(const Arguments& arguments)
{
    namespace process = boost::process::v2;
    boost::asio::io_context context;
    boost::asio::readable_pipe output(context);
    boost::asio::readable_pipe error(context);
    process::process child(context, arguments.front(), Arguments(arguments.begin() + 1, arguments.end()),
                           process::process_stdio{nullptr, output, error});
    Captured captured;
    const auto atEnd = [](const boost::system::error_code&, std::size_t) {};
    boost::asio::async_read(output, boost::asio::dynamic_buffer(captured.output), atEnd);
    boost::asio::async_read(error, boost::asio::dynamic_buffer(captured.error), atEnd);
    context.run();
    captured.status = child.wait();
    return captured;
}

} // namespace benchmarks
