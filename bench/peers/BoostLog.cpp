// Boost.Log with automatic flushing.
#include "Peer.h"

#include <boost/log/attributes.hpp>
#include <boost/log/core.hpp>
#include <boost/log/expressions.hpp>
#include <boost/log/sinks.hpp>
#include <boost/log/sources/severity_feature.hpp>
#include <boost/log/sources/severity_logger.hpp>
#include <boost/log/support/date_time.hpp>
#include <boost/log/trivial.hpp>
#include <boost/smart_ptr/make_shared.hpp>

namespace logging = boost::log;

namespace {

logging::sources::severity_logger_mt<logging::trivial::severity_level> *logger = nullptr;

// Takes the formatted text and keeps nothing.
class Nowhere
    : public logging::sinks::basic_formatted_sink_backend<char,
                                                          logging::sinks::synchronized_feeding> {
  public:
    void consume(const logging::record_view &, const std::string &text)
    {
        peer::bytesDropped += static_cast<long>(text.size());
    }
};

logging::formatter layout()
{
    namespace expr = logging::expressions;
    return expr::stream << expr::format_date_time<boost::posix_time::ptime>("TimeStamp",
                                                                            "%Y-%m-%d %H:%M:%S.%f")
                        << "+00:00 " << peer::kSource << ' ' << peer::kFunction << ' '
                        << peer::kLine << ' ' << expr::smessage;
}

template <class Backend>
void addSink(const boost::shared_ptr<Backend> &backend)
{
    auto sink = boost::make_shared<logging::sinks::synchronous_sink<Backend>>(backend);
    sink->set_formatter(layout());
    logging::core::get()->add_sink(sink);
}

boost::shared_ptr<logging::sinks::text_file_backend> makeFile(peer::Output output,
                                                              const std::string &path)
{
    auto file = boost::make_shared<logging::sinks::text_file_backend>();
    file->auto_flush(true);
    if (output == peer::Output::kFile) {
        file->set_file_name_pattern(path);
        return file;
    }
    file->set_file_name_pattern(path + "%N");
    file->set_rotation_size(peer::kRollingBytes);
    file->set_file_collector(logging::sinks::file::make_collector(
        logging::keywords::target = path + ".d",
        logging::keywords::max_files = peer::kRollingFiles - 1));
    return file;
}

} // namespace

namespace peer {

bool open(Output output, const std::string &path)
{
    if (output == Output::kShared) return false;
    if (output == Output::kNowhere)
        addSink(boost::make_shared<Nowhere>());
    else
        addSink(makeFile(output, path));
    logging::core::get()->add_global_attribute("TimeStamp", logging::attributes::local_clock());
    logging::core::get()->set_filter(logging::trivial::severity >= logging::trivial::info);
    logger = new logging::sources::severity_logger_mt<logging::trivial::severity_level>;
    return true;
}

void log(int number)
{
    BOOST_LOG_SEV(*logger, logging::trivial::info)
        << "The " << kCustomer << " ordered " << kArticle << ", " << std::setw(7)
        << std::setfill('0') << number;
}

void skip(int number)
{
    BOOST_LOG_SEV(*logger, logging::trivial::debug) << number;
}
void skipThroughCall(int number)
{
    skip(number);
}

void close()
{
    delete logger;
    logging::core::get()->remove_all_sinks();
}

} // namespace peer
