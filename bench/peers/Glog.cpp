// glog, without buffering. Its line has a prefix of its own; the function is put into the text.
#include "Peer.h"

#include <glog/logging.h>

namespace peer {

bool open(Output output, const std::string &path)
{
    if (output != Output::kFile) return false;
    FLAGS_logbuflevel = -1;
    FLAGS_minloglevel = google::GLOG_INFO;
    FLAGS_timestamp_in_logfile_name = false;
    FLAGS_max_log_size = 4095; // in MB, the most it takes
    google::InitGoogleLogging("app");
    google::SetLogDestination(google::GLOG_INFO, path.c_str());
    return true;
}

void log(int number)
{
    google::LogMessage(kSource, kLine, google::GLOG_INFO).stream()
        << kFunction << ' ' << "The " << kCustomer << " ordered " << kArticle << ", " << number;
}

void skip(int number)
{
    VLOG(1) << number;
}
void skipThroughCall(int number)
{
    skip(number);
}

void close()
{
    google::ShutdownGoogleLogging();
}

} // namespace peer
