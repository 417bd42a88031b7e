// log4cplus with ImmediateFlush.
#include "Peer.h"

#include <log4cplus/configurator.h>
#include <log4cplus/fileappender.h>
#include <log4cplus/helpers/property.h>
#include <log4cplus/initializer.h>
#include <log4cplus/layout.h>
#include <log4cplus/logger.h>
#include <log4cplus/loggingmacros.h>
#include <sstream>

namespace {

std::unique_ptr<log4cplus::Initializer> library;
log4cplus::Logger logger;

// Formats and keeps nothing.
class Nowhere : public log4cplus::Appender {
  public:
    ~Nowhere() override { destructorImpl(); }
    void close() override { closed = true; }

  protected:
    void append(const log4cplus::spi::InternalLoggingEvent &event) override
    {
        peer::bytesDropped += static_cast<long>(formatEvent(event).size());
    }
};

log4cplus::helpers::Properties limits(const std::string &path, int bytes, int files)
{
    log4cplus::helpers::Properties properties;
    properties.setProperty("File", path);
    properties.setProperty("MaxFileSize", std::to_string(bytes));
    properties.setProperty("MaxBackupIndex", std::to_string(files - 1));
    properties.setProperty("ImmediateFlush", "true");
    return properties;
}

log4cplus::SharedAppenderPtr makeAppender(peer::Output output, const std::string &path)
{
    using namespace log4cplus;
    switch (output) {
    case peer::Output::kFile:
        return SharedAppenderPtr(new FileAppender(path, std::ios_base::app, true));
    case peer::Output::kRolling:
        return SharedAppenderPtr(
            new RollingFileAppender(limits(path, peer::kRollingBytes, peer::kRollingFiles)));
    case peer::Output::kShared: {
        helpers::Properties properties = limits(path, peer::kSharedBytes, peer::kSharedFiles);
        properties.setProperty("UseLockFile", "true");
        return SharedAppenderPtr(new RollingFileAppender(properties));
    }
    default: return SharedAppenderPtr(new Nowhere);
    }
}

} // namespace

namespace peer {

bool open(Output output, const std::string &path)
{
    library = std::make_unique<log4cplus::Initializer>();
    logger = log4cplus::Logger::getInstance("app");
    logger.setLogLevel(log4cplus::INFO_LOG_LEVEL);
    log4cplus::SharedAppenderPtr appender = makeAppender(output, path);
    appender->setLayout(
        std::make_unique<log4cplus::PatternLayout>("%D{%Y-%m-%d %H:%M:%S.%q%z} %b %M %L %m%n"));
    logger.addAppender(appender);
    return true;
}

void log(int number)
{
    std::ostringstream text;
    text << "The " << kCustomer << " ordered " << kArticle << ", " << number;
    logger.log(log4cplus::INFO_LOG_LEVEL, text.str(), kSource, kLine, kFunction);
}

void skip(int number)
{
    LOG4CPLUS_DEBUG(logger, number);
}
void skipThroughCall(int number)
{
    skip(number);
}

void close()
{
    logger.closeNestedAppenders();
    logger = log4cplus::Logger();
    library.reset();
}

} // namespace peer
