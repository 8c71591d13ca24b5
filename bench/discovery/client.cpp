// The client of a shell, from the start of the process until a service is matched in both directions; prints when
// that was. client DOMAIN
#include <chrono>
#include <cstdlib>
#include <semaphore>

#include "Instant.h"
#include "log/Log.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "remoteConfig/RemoteConfigClient.h"

namespace
{

std::counting_semaphore<> matchesChanged{0};

void listen(BRELRemoteConfigClient *client)
{
    DDS_DataReaderListener readerListener = {};
    readerListener.on_subscription_matched = [](void *, DDS_DataReader *,
                                                const DDS_SubscriptionMatchedStatus *) {
        matchesChanged.release();
    };
    DDS_DataReader_set_listener(
        ZUV_Service_Admin_CommandReplyDataReader_as_datareader(
            ZUV_BrelServiceAdminRequester_get_reply_datareader(client->_requester)),
        &readerListener, DDS_SUBSCRIPTION_MATCHED_STATUS);
    DDS_DataWriterListener writerListener = {};
    writerListener.on_publication_matched = [](void *, DDS_DataWriter *,
                                               const DDS_PublicationMatchedStatus *) {
        matchesChanged.release();
    };
    DDS_DataWriter_set_listener(
        ZUV_Service_Admin_CommandRequestDataWriter_as_datawriter(
            ZUV_BrelServiceAdminRequester_get_request_datawriter(client->_requester)),
        &writerListener, DDS_PUBLICATION_MATCHED_STATUS);
}

} // namespace

int main(int argc, char **argv)
{
    using namespace std::chrono_literals;
    BRELLog_setUp();
    BRELRemoteConfigClient *const client =
        argc == 2 ? BRELRemoteConfigClient_new(std::atoi(argv[1]), 10) : nullptr;
    if (client == nullptr) {
        return EXIT_FAILURE;
    }
    listen(client);
    bool isMatched = false;
    do {
        isMatched = BRELRemoteConfigClient_hasMatchingServer(client) != 0;
    } while (!isMatched && matchesChanged.try_acquire_for(10s));
    if (isMatched) {
        bench::printInstant();
    }
    BRELRemoteConfigClient_delete(client);
    DDS_DomainParticipantFactory_finalize_instance();
    return isMatched ? EXIT_SUCCESS : EXIT_FAILURE;
}
