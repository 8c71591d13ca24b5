// Our content filter as the middleware sees it: a filter class of a participant.
#ifndef ZUV_PLATFORM_DDS_FILTER_CLASS_HPP
#define ZUV_PLATFORM_DDS_FILTER_CLASS_HPP

#include <memory>

namespace eprosima::fastdds::dds
{
class DomainParticipant;
}

namespace zuv::dds
{

class FilterClassImpl;

// Must outlive the participant's filtered topics.
class FilterClass
{
public:
    // The name that filtered readers announce. Writers elsewhere do not know it and send everything.
    static const char *name();

    // Make the class known to a participant. Null, after a report, on failure.
    static std::unique_ptr<FilterClass>
    make(eprosima::fastdds::dds::DomainParticipant &participant);
    ~FilterClass();

private:
    FilterClass();
    std::unique_ptr<FilterClassImpl> impl_;
};

} // namespace zuv::dds

#endif
