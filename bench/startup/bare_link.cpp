// Is linked with the middleware, so that it is loaded, and ends.
#include <fastdds/dds/domain/DomainParticipantFactory.hpp>

int main()
{
    auto *volatile used = &eprosima::fastdds::dds::DomainParticipantFactory::get_instance;
    return used != nullptr ? 0 : 1;
}
