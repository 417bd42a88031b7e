// spdlog, flushing on every record.
#include "Peer.h"

#include <spdlog/sinks/base_sink.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <spdlog/spdlog.h>

namespace {

std::shared_ptr<spdlog::logger> logger;

// Formats and keeps nothing.
class Nowhere : public spdlog::sinks::base_sink<std::mutex> {
  protected:
    void sink_it_(const spdlog::details::log_msg &message) override
    {
        spdlog::memory_buf_t text;
        formatter_->format(message, text);
        peer::bytesDropped += static_cast<long>(text.size());
    }
    void flush_() override {}
};

spdlog::sink_ptr makeSink(peer::Output output, const std::string &path)
{
    switch (output) {
    case peer::Output::kFile: return std::make_shared<spdlog::sinks::basic_file_sink_mt>(path);
    case peer::Output::kRolling:
        return std::make_shared<spdlog::sinks::rotating_file_sink_mt>(path, peer::kRollingBytes,
                                                                      peer::kRollingFiles - 1);
    case peer::Output::kNowhere: return std::make_shared<Nowhere>();
    default: return nullptr;
    }
}

} // namespace

namespace peer {

bool open(Output output, const std::string &path)
{
    const spdlog::sink_ptr sink = makeSink(output, path);
    if (!sink) return false;
    logger = std::make_shared<spdlog::logger>("app", sink);
    logger->set_level(spdlog::level::info);
    logger->flush_on(spdlog::level::info);
    logger->set_pattern("%Y-%m-%d %H:%M:%S.%e%z %s %! %# %v");
    return true;
}

void log(int number)
{
    logger->log(spdlog::source_loc{kSource, kLine, kFunction}, spdlog::level::info,
                "The {} ordered {}, {}", kCustomer, kArticle, number);
}

void skip(int number)
{
    logger->debug("{}", number);
}
void skipThroughCall(int number)
{
    skip(number);
}

void close()
{
    logger.reset();
}

} // namespace peer
