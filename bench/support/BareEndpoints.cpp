#include "BareEndpoints.h"

#include <cstdlib>
#include <cstring>

#include <fastdds/dds/core/condition/WaitSet.hpp>
#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/domain/DomainParticipantFactory.hpp>
#include <fastdds/dds/publisher/DataWriter.hpp>
#include <fastdds/dds/publisher/Publisher.hpp>
#include <fastdds/dds/subscriber/DataReader.hpp>
#include <fastdds/dds/subscriber/SampleInfo.hpp>
#include <fastdds/dds/subscriber/Subscriber.hpp>
#include <fastdds/dds/topic/TopicDataType.hpp>
#include <fastdds/dds/topic/TypeSupport.hpp>
#include <fastdds/rtps/transport/UDPv4TransportDescriptor.h>
#include <fastdds/rtps/transport/shared_mem/SharedMemTransportDescriptor.h>

#include "Ratio.h"

namespace bench
{
namespace
{

namespace fast = eprosima::fastdds::dds;
namespace rtps = eprosima::fastrtps::rtps;
namespace transport = eprosima::fastdds::rtps;
using eprosima::fastrtps::Duration_t;
using FastReturnCode = eprosima::fastrtps::types::ReturnCode_t;

// As the endpoints of a command are.
constexpr std::int32_t kMaxSamples = 32;
constexpr std::int32_t kInitialCaches = 16;
constexpr std::uint32_t kInitialPayloadSize = 1024;
const Duration_t kHeartbeatPeriod{0, 100'000'000};
const Duration_t kHeartbeatResponseDelay{0, 0};
const Duration_t kNackResponseDelay{0, 5'000'000}; // the middleware's own, which is not ours
const Duration_t kMaxBlockingTime{10, 0};
const Duration_t kAnnouncementPeriod{0, 100'000'000};
constexpr std::chrono::seconds kMaxWrite{10};

class OctetType : public fast::TopicDataType
{
public:
    explicit OctetType(const char *name)
    {
        setName(name);
        m_typeSize = kInitialPayloadSize;
        m_isGetKeyDefined = false;
        auto_fill_type_object(false);
        auto_fill_type_information(false);
    }

    bool serialize(void *data, rtps::SerializedPayload_t *payload) override
    {
        const auto &sample = *static_cast<const Octets *>(data);
        std::memcpy(payload->data, sample.data(), sample.size());
        payload->length = static_cast<std::uint32_t>(sample.size());
        payload->encapsulation = CDR_LE;
        return true;
    }
    bool deserialize(rtps::SerializedPayload_t *payload, void *data) override
    {
        static_cast<Octets *>(data)->assign(payload->data, payload->data + payload->length);
        return true;
    }
    std::function<std::uint32_t()> getSerializedSizeProvider(void *data) override
    {
        return [data] {
            return static_cast<std::uint32_t>(static_cast<const Octets *>(data)->size());
        };
    }
    void *createData() override { return new Octets; }
    void deleteData(void *data) override { delete static_cast<Octets *>(data); }
    bool getKey(void *, rtps::InstanceHandle_t *, bool) override { return false; }
};

// The middleware's own transports, with nothing changed but where they lead to.
void useUntunedTransports(fast::DomainParticipantQos &qos)
{
    auto udp = std::make_shared<transport::UDPv4TransportDescriptor>();
    udp->interfaceWhiteList = {"127.0.0.1"};
    qos.transport() = fast::TransportConfigQos();
    qos.transport().use_builtin_transports = false;
    qos.transport().user_transports = {std::make_shared<transport::SharedMemTransportDescriptor>(),
                                       udp};
}

fast::DomainParticipant *createParticipant(int domainId, Transports transports)
{
    // Set here, and not left to the environment: nobody can forget it.
    setenv("FASTRTPS_DEFAULT_PROFILES_FILE", ZUV_LOOPBACK_PROFILE, 1);
    auto *const factory = fast::DomainParticipantFactory::get_instance();
    factory->load_profiles();
    fast::DomainParticipantQos qos = factory->get_default_participant_qos();
    if (qos.transport().use_builtin_transports) {
        giveUp("the loopback profile was not read");
    }
    // Often, as a bare participant misses about every second answer to its first announcement.
    qos.wire_protocol().builtin.discovery_config.leaseDuration_announcementperiod =
        kAnnouncementPeriod;
    if (transports == Transports::kUntuned) {
        useUntunedTransports(qos);
    }
    return factory->create_participant(static_cast<fast::DomainId_t>(domainId), qos);
}

// What reader and writer share.
template <typename Qos>
void useCommandQos(Qos &qos)
{
    qos.reliability().kind = fast::RELIABLE_RELIABILITY_QOS;
    qos.reliability().max_blocking_time = kMaxBlockingTime;
    qos.durability().kind = fast::VOLATILE_DURABILITY_QOS;
    qos.history().kind = fast::KEEP_ALL_HISTORY_QOS;
    qos.resource_limits().max_instances = 1;
    qos.resource_limits().max_samples_per_instance = kMaxSamples;
    qos.resource_limits().max_samples = kMaxSamples;
    qos.resource_limits().allocated_samples = kInitialCaches;
    qos.endpoint().history_memory_policy = rtps::PREALLOCATED_WITH_REALLOC_MEMORY_MODE;
    qos.data_sharing().off();
}

} // namespace

class BareEndpoints::Impl
{
public:
    Impl(int domainId, Side side, Transports transports, const std::string &name)
        : participant_(createParticipant(domainId, transports))
    {
        if (participant_ == nullptr) {
            giveUp("no bare participant");
        }
        const bool isAsking = side == Side::kAsking;
        fast::Topic *const requests = createTopic(name + "/request");
        fast::Topic *const replies = createTopic(name + "/reply");
        createReader(isAsking ? replies : requests);
        createWriter(isAsking ? requests : replies);
    }

    ~Impl()
    {
        participant_->delete_contained_entities();
        fast::DomainParticipantFactory::get_instance()->delete_participant(participant_);
    }
    Impl(const Impl &) = delete;
    Impl &operator=(const Impl &) = delete;

    bool waitForMatch(std::chrono::seconds patience)
    {
        fast::StatusCondition &written = writer_->get_statuscondition();
        fast::StatusCondition &read = reader_->get_statuscondition();
        written.set_enabled_statuses(fast::StatusMask::publication_matched());
        read.set_enabled_statuses(fast::StatusMask::subscription_matched());
        fast::WaitSet waitSet;
        waitSet.attach_condition(written);
        waitSet.attach_condition(read);
        bool isMatched = false;
        while (!isMatched && wait(waitSet, patience)) {
            fast::PublicationMatchedStatus publication;
            fast::SubscriptionMatchedStatus subscription;
            writer_->get_publication_matched_status(publication);
            reader_->get_subscription_matched_status(subscription);
            isMatched = publication.current_count > 0 && subscription.current_count > 0;
        }
        read.set_enabled_statuses(fast::StatusMask::data_available());
        return isMatched;
    }

    void write(Octets &sample)
    {
        // In a full history a write waits for room, and fails early when all the room is made at once.
        const auto end = std::chrono::steady_clock::now() + kMaxWrite;
        while (!writer_->write(&sample)) {
            if (std::chrono::steady_clock::now() > end) {
                giveUp("a bare write failed");
            }
        }
    }

    bool receive(Octets &sample, std::chrono::seconds patience)
    {
        fast::SampleInfo info;
        while (wait(dataSet_, patience)) {
            if (reader_->take_next_sample(&sample, &info) == FastReturnCode::RETCODE_OK &&
                info.valid_data) {
                return true;
            }
        }
        return false;
    }

private:
    bool wait(fast::WaitSet &waitSet, std::chrono::seconds patience)
    {
        return waitSet.wait(active_, Duration_t(static_cast<std::int32_t>(patience.count()), 0)) ==
               FastReturnCode::RETCODE_OK;
    }

    fast::Topic *createTopic(const std::string &name)
    {
        const fast::TypeSupport type(new OctetType(name.c_str()));
        type.register_type(participant_);
        return participant_->create_topic(name, name, fast::TOPIC_QOS_DEFAULT);
    }

    void createReader(fast::Topic *topic)
    {
        fast::DataReaderQos qos;
        useCommandQos(qos);
        qos.reliable_reader_qos().times.heartbeatResponseDelay = kHeartbeatResponseDelay;
        fast::Subscriber *const subscriber =
            participant_->create_subscriber(fast::SUBSCRIBER_QOS_DEFAULT);
        reader_ = subscriber == nullptr ? nullptr : subscriber->create_datareader(topic, qos);
        if (reader_ == nullptr) {
            giveUp("no bare reader");
        }
        reader_->get_statuscondition().set_enabled_statuses(fast::StatusMask::data_available());
        dataSet_.attach_condition(reader_->get_statuscondition());
    }

    void createWriter(fast::Topic *topic)
    {
        fast::DataWriterQos qos;
        useCommandQos(qos);
        qos.reliable_writer_qos().times.heartbeatPeriod = kHeartbeatPeriod;
        qos.reliable_writer_qos().times.nackResponseDelay = kNackResponseDelay;
        fast::Publisher *const publisher =
            participant_->create_publisher(fast::PUBLISHER_QOS_DEFAULT);
        writer_ = publisher == nullptr ? nullptr : publisher->create_datawriter(topic, qos);
        if (writer_ == nullptr) {
            giveUp("no bare writer");
        }
    }

    fast::DomainParticipant *participant_;
    fast::DataWriter *writer_ = nullptr;
    fast::DataReader *reader_ = nullptr;
    fast::WaitSet dataSet_;
    fast::ConditionSeq active_; // kept for its memory
};

BareEndpoints::BareEndpoints(int domainId, Side side, Transports transports,
                             const std::string &name)
    : impl_(std::make_unique<Impl>(domainId, side, transports, name))
{
}

BareEndpoints::~BareEndpoints() = default;

bool BareEndpoints::waitForMatch(std::chrono::seconds patience)
{
    return impl_->waitForMatch(patience);
}

void BareEndpoints::write(Octets &sample)
{
    impl_->write(sample);
}

bool BareEndpoints::receive(Octets &sample, std::chrono::seconds patience)
{
    return impl_->receive(sample, patience);
}

} // namespace bench
