#include "FastLog.hpp"

#include <memory>
#include <mutex>
#include <string>

#include <fastdds/dds/log/Log.hpp>

#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"

namespace zuv::dds
{
namespace
{

using eprosima::fastdds::dds::Log;

class Consumer : public eprosima::fastdds::dds::LogConsumer
{
public:
    void Consume(const Log::Entry &entry) override
    {
        const std::string text =
            std::string("middleware: ") + entry.context.category + ": " + entry.message;
        switch (entry.kind) {
        case Log::Kind::Error:
            ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_ENTITY, &ZUV_LOG_ANY_s, text.c_str());
            break;
        case Log::Kind::Warning:
            ZUV_LOG(DDS, ZUV_LOG_BIT_WARNING, DDS_SUBMODULE_ENTITY, &ZUV_LOG_ANY_s, text.c_str());
            break;
        case Log::Kind::Info:
            ZUV_LOG(DDS, ZUV_LOG_BIT_INFORMATION, DDS_SUBMODULE_ENTITY, &ZUV_LOG_ANY_s,
                    text.c_str());
            break;
        }
    }
};

} // namespace

void routeFastLog()
{
    static std::once_flag once;
    std::call_once(once, [] {
        Log::ClearConsumers();
        Log::RegisterConsumer(std::make_unique<Consumer>());
        Log::SetVerbosity(ZUV_LOG_ENABLED(DDS, ZUV_LOG_BIT_WARNING, DDS_SUBMODULE_ENTITY)
                              ? Log::Kind::Warning
                              : Log::Kind::Error);
    });
}

} // namespace zuv::dds
