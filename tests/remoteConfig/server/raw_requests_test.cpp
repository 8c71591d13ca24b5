// Requests that no client of ours can send: they are put on the wire octet by octet.
#include <algorithm>

#include <fastdds/rtps/RTPSDomain.h>
#include <fastdds/rtps/attributes/HistoryAttributes.h>
#include <fastdds/rtps/attributes/WriterAttributes.h>
#include <fastdds/rtps/history/WriterHistory.h>
#include <fastdds/rtps/participant/RTPSParticipant.h>
#include <fastdds/rtps/writer/RTPSWriter.h>
#include <fastdds/rtps/writer/WriterListener.h>
#include <fastrtps/attributes/ParticipantAttributes.h>
#include <fastrtps/attributes/TopicAttributes.h>
#include <fastrtps/qos/WriterQos.h>
#include <fastrtps/xmlparser/XMLProfileManager.h>

#include "ServerTest.h"
#include "platform/typesys/Codec.h"

namespace zuv_test
{
namespace
{

namespace rtps = eprosima::fastrtps::rtps;
using Octets = std::vector<unsigned char>;

constexpr unsigned char kInstance = 5;

// A request to `target` as its octets, which end in padding.
Octets octetsOf(const char *target, const char *identifier,
                ZUV_Service_Admin_CommandActionKind action)
{
    ZUV_Service_Admin_CommandRequest request;
    EXPECT_TRUE(ZUV_Service_Admin_CommandRequest_initialize(&request));
    DDS_String_replace(&request.application_name, target);
    DDS_String_replace(&request.resource_identifier, identifier);
    request.action = action;
    request.instance_id = kInstance;
    const DDS_TypeCode &type = *ZUV_Service_Admin_CommandRequest_get_typecode();
    Octets octets(ZUVCodec_getSize(&type, DDS_BOOLEAN_TRUE, &request));
    DDS_UnsignedLong length = 0;
    EXPECT_TRUE(ZUVCodec_serialize(&type, &request, octets.data(),
                                   static_cast<DDS_UnsignedLong>(octets.size()), &length));
    octets.resize(length);
    ZUV_Service_Admin_CommandRequest_finalize(&request);
    return octets;
}

// A writer of requests below the entities of DDS. It stays on loopback by the profile, as all do.
class RawWriter : private rtps::WriterListener
{
public:
    RawWriter()
        : history_(rtps::HistoryAttributes(rtps::DYNAMIC_RESERVE_MEMORY_MODE, 1024, 10, 100))
    {
        eprosima::fastrtps::ParticipantAttributes participant;
        eprosima::fastrtps::xmlparser::XMLProfileManager::getDefaultParticipantAttributes(
            participant);
        participant_ = rtps::RTPSDomain::createParticipant(
            static_cast<std::uint32_t>(loopbackDomainId()), participant.rtps);
        rtps::WriterAttributes attributes;
        attributes.endpoint.reliabilityKind = rtps::RELIABLE;
        attributes.endpoint.topicKind = rtps::WITH_KEY;
        attributes.endpoint.durabilityKind = rtps::VOLATILE;
        attributes.times.heartbeatPeriod = eprosima::fastrtps::Duration_t(0, 20'000'000);
        writer_ = rtps::RTPSDomain::createRTPSWriter(participant_, attributes, &history_, this);
        eprosima::fastrtps::WriterQos qos;
        qos.m_durability.kind = eprosima::fastdds::dds::VOLATILE_DURABILITY_QOS;
        qos.m_reliability.kind = eprosima::fastdds::dds::RELIABLE_RELIABILITY_QOS;
        qos.representation.m_value = {eprosima::fastdds::dds::XCDR2_DATA_REPRESENTATION};
        EXPECT_TRUE(participant_->registerWriter(
            writer_,
            eprosima::fastrtps::TopicAttributes(
                ZUV_SERVICE_ADMIN_COMMAND_REQUEST_TOPIC_NAME,
                ZUV_Service_Admin_CommandRequestTypeSupport_get_type_name(), rtps::WITH_KEY),
            qos));
    }
    ~RawWriter() override { rtps::RTPSDomain::removeRTPSParticipant(participant_); }
    RawWriter(const RawWriter &) = delete;
    RawWriter &operator=(const RawWriter &) = delete;

    bool waitForMatch()
    {
        return eventually([this] { return readers_ > 0; });
    }
    // Until the reader has it.
    void send(const Octets &octets)
    {
        const auto size = static_cast<std::uint32_t>(octets.size());
        rtps::InstanceHandle_t handle; // the key, big endian
        handle.value[3] = kInstance;
        rtps::CacheChange_t *const change =
            writer_->new_change([size] { return size; }, rtps::ALIVE, handle);
        ASSERT_NE(change, nullptr);
        std::memcpy(change->serializedPayload.data, octets.data(), octets.size());
        change->serializedPayload.length = size;
        ASSERT_TRUE(history_.add_change(change));
        EXPECT_TRUE(writer_->wait_for_all_acked(eprosima::fastrtps::Duration_t(10, 0)));
    }

private:
    void onWriterMatched(rtps::RTPSWriter *, rtps::MatchingInfo &info) override
    {
        readers_ += info.status == rtps::MATCHED_MATCHING ? 1 : -1;
    }

    rtps::WriterHistory history_;
    rtps::RTPSParticipant *participant_ = nullptr;
    rtps::RTPSWriter *writer_ = nullptr;
    std::atomic<int> readers_ = 0;
};

class RawRequests : public RemoteConfigServer
{
};

// What does not fit the type is refused before; the service's own refusal is for what is built in the process.
TEST_F(RawRequests, anActionThatIsNoneNeverComesToTheInterceptor)
{
    Host host("raw");
    host.make();
    startAndMeet(host);
    RawWriter writer;
    ASSERT_TRUE(writer.waitForMatch());
    const Octets octets = octetsOf("raw", "silent", ZUV_Service_Admin_CommandActionKind_GET_ACTION);
    const Octets other =
        octetsOf("raw", "silent", ZUV_Service_Admin_CommandActionKind_DELETE_ACTION);
    ASSERT_EQ(octets.size(), other.size());
    const auto action = std::mismatch(octets.begin(), octets.end(), other.begin()).first;
    Octets wrong = octets;
    wrong[static_cast<std::size_t>(action - octets.begin())] = 9;
    writer.send(octets);
    writer.send(wrong);
    writer.send(octets);
    EXPECT_EQ(send("raw", "last"), "done");
    EXPECT_EQ(host.interceptor.identifiers(), (Lines{"silent", "silent", "last"}));
}

} // namespace
} // namespace zuv_test
