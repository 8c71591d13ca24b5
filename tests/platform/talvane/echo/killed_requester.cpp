// Asks a service for ten answers and is gone, by SIGKILL, before it has taken or acknowledged them.
//
//   talvane_killed_requester DOMAIN
#include <csignal>
#include <cstdlib>
#include <thread>

#include "../Endpoints.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/typesys/String.h"

int main(int argc, char **argv)
{
    DDS_DomainParticipant *const participant = DDS_DomainParticipantFactory_create_participant(
        DDS_DomainParticipantFactory_get_instance(), argc > 1 ? std::atoi(argv[1]) : 0,
        &DDS_PARTICIPANT_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    ZUV_Talvane_Requester *const requester = zuv_test::createRequester(participant);
    if (requester == nullptr) {
        return 1;
    }
    DDS_DataWriter *const writer = ZUV_Talvane_EntityUntypedImpl_get_datawriter(requester->_impl);
    DDS_DataReader *const reader = ZUV_Talvane_EntityUntypedImpl_get_datareader(requester->_impl);
    DDS_PublicationMatchedStatus written = {};
    DDS_SubscriptionMatchedStatus read = {};
    for (int round = 0; written.current_count == 0 || read.current_count == 0; ++round) {
        if (round == 10000) {
            return 2;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        DDS_DataWriter_get_publication_matched_status(writer, &written);
        DDS_DataReader_get_subscription_matched_status(reader, &read);
    }
    Test_Question question;
    Test_Question_initialize(&question);
    DDS_String_replace(&question.text, "repeat 10");
    DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
    ZUV_Talvane_EntityUntypedImpl_send_sample(requester->_impl, &question, &params);
    std::raise(SIGKILL);
    return 3;
}
