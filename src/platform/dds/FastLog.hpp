// The middleware's own log lines go where ours go.
#ifndef ZUV_PLATFORM_DDS_FAST_LOG_HPP
#define ZUV_PLATFORM_DDS_FAST_LOG_HPP

namespace zuv::dds
{

// Take the middleware's log over, once in a process. Its lines come out under the DDS switches; nothing of it
// reaches standard output. Any thread.
void routeFastLog();

} // namespace zuv::dds

#endif
