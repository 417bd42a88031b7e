// log4cxx with immediate flushing.
#include "Peer.h"

#include <log4cxx/appenderskeleton.h>
#include <log4cxx/basicconfigurator.h>
#include <log4cxx/fileappender.h>
#include <log4cxx/helpers/pool.h>
#include <log4cxx/logger.h>
#include <log4cxx/patternlayout.h>
#include <log4cxx/rolling/fixedwindowrollingpolicy.h>
#include <log4cxx/rolling/rollingfileappender.h>
#include <log4cxx/rolling/sizebasedtriggeringpolicy.h>

namespace {

log4cxx::LoggerPtr logger;

// Formats and keeps nothing.
class Nowhere : public log4cxx::AppenderSkeleton {
  public:
    void close() override {}
    bool requiresLayout() const override { return true; }

  protected:
    void append(const log4cxx::spi::LoggingEventPtr &event, log4cxx::helpers::Pool &pool) override
    {
        log4cxx::LogString text;
        getLayout()->format(text, event, pool);
        peer::bytesDropped += static_cast<long>(text.size());
    }
};

log4cxx::AppenderPtr makeRolling(const std::string &path, const log4cxx::LayoutPtr &layout)
{
    using namespace log4cxx::rolling;
    auto trigger = std::make_shared<SizeBasedTriggeringPolicy>();
    trigger->setMaxFileSize(peer::kRollingBytes);
    auto policy = std::make_shared<FixedWindowRollingPolicy>();
    policy->setMinIndex(1);
    policy->setMaxIndex(peer::kRollingFiles - 1);
    policy->setFileNamePattern(path + "%i");
    auto appender = std::make_shared<RollingFileAppender>();
    appender->setLayout(layout);
    appender->setFile(path);
    appender->setTriggeringPolicy(trigger);
    appender->setRollingPolicy(policy);
    log4cxx::helpers::Pool pool;
    policy->activateOptions(pool);
    appender->activateOptions(pool);
    return appender;
}

log4cxx::AppenderPtr makeAppender(peer::Output output, const std::string &path,
                                  const log4cxx::LayoutPtr &layout)
{
    if (output == peer::Output::kFile)
        return std::make_shared<log4cxx::FileAppender>(layout, path, true, false, 0);
    if (output == peer::Output::kRolling) return makeRolling(path, layout);
    auto nowhere = std::make_shared<Nowhere>();
    nowhere->setLayout(layout);
    return nowhere;
}

} // namespace

namespace peer {

bool open(Output output, const std::string &path)
{
    if (output == Output::kShared) return false;
    logger = log4cxx::Logger::getLogger("app");
    logger->setLevel(log4cxx::Level::getInfo());
    logger->setAdditivity(false);
    const log4cxx::LayoutPtr layout =
        std::make_shared<log4cxx::PatternLayout>("%d{yyyy-MM-dd HH:mm:ss.SSSZ} %f %M %L %m%n");
    logger->addAppender(makeAppender(output, path, layout));
    return true;
}

void log(int number)
{
    logger->forcedLog(log4cxx::Level::getInfo(),
                      std::string("The ") + kCustomer + " ordered " + kArticle + ", " +
                          std::to_string(number),
                      log4cxx::spi::LocationInfo(kSource, kSource, kFunction, kLine));
}

void skip(int number)
{
    LOG4CXX_DEBUG(logger, number);
}
void skipThroughCall(int number)
{
    skip(number);
}

void close()
{
    logger->removeAllAppenders();
    logger.reset();
}

} // namespace peer
