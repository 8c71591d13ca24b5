// Answers questions until its standard input ends or it is killed.
//
//   talvane_echo_service DOMAIN NAME
//
// It takes the questions that name nobody or a name that its own matches as a pattern, and answers with "NAME:" and the
// text of the question. Some texts tell it more, and what they tell is done before the answer is sent:
//
//   "size N"      the answer's text has N characters
//   "sleep N"     it comes N milliseconds later
//   "repeat N"    N answers, numbered from 0
//   "die"         the process ends at once, without an answer
//   "dump"        the answer tells the length and the sum of the question's octets
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <unistd.h>

#include "../Endpoints.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/typesys/String.h"

namespace
{

std::atomic<bool> isStopping{false};

class Service
{
public:
    Service(int domain, std::string name) : name_(std::move(name))
    {
        participant_ = DDS_DomainParticipantFactory_create_participant(
            DDS_DomainParticipantFactory_get_instance(), domain, &DDS_PARTICIPANT_QOS_DEFAULT,
            nullptr, DDS_STATUS_MASK_NONE);
        const std::string filter = "addressee = NULLOR addressee MATCH '" + name_ + "'";
        replier_ = zuv_test::createReplier(participant_, filter.c_str());
        Test_Answer_initialize(&answer_);
    }
    ~Service()
    {
        Test_Answer_finalize(&answer_);
        ZUV_Talvane_Replier_delete(replier_);
        DDS_DomainParticipant_delete_contained_entities(participant_);
        DDS_DomainParticipantFactory_delete_participant(DDS_DomainParticipantFactory_get_instance(),
                                                        participant_);
        DDS_DomainParticipantFactory_finalize_instance();
    }
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    bool isReady() const { return replier_ != nullptr; }

    void serve()
    {
        const DDS_Duration_t patience = {0, 50000000};
        while (!isStopping) {
            if (ZUV_Talvane_Replier_wait_for_requests(replier_, 1, &patience) == DDS_RETCODE_OK) {
                takeAll();
            }
        }
    }

private:
    void takeAll()
    {
        void **data = nullptr;
        DDS_Long count = 0;
        DDS_Boolean isLoan = DDS_BOOLEAN_FALSE;
        DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
        if (ZUV_Talvane_EntityUntypedImpl_get_sample_loaned(
                replier_->_impl, &data, &count, &isLoan, nullptr, &infos, 0, 0, DDS_BOOLEAN_TRUE,
                DDS_LENGTH_UNLIMITED, nullptr, DDS_BOOLEAN_TRUE) != DDS_RETCODE_OK) {
            return;
        }
        for (DDS_Long index = 0; index < count; ++index) {
            const DDS_SampleInfo &info = *DDS_SampleInfoSeq_get_reference(&infos, index);
            if (info.valid_data) {
                act(*static_cast<Test_Question *>(data[index]), info.sample_identity);
            }
        }
        ZUV_Talvane_EntityUntypedImpl_return_loan(replier_->_impl, data, count, &infos);
    }

    void act(const Test_Question &question, const DDS_SampleIdentity_t &identity)
    {
        const std::string text = question.text;
        const std::size_t blank = text.find(' ');
        const std::string verb = text.substr(0, blank);
        const long number =
            blank == std::string::npos ? 0 : std::strtol(text.c_str() + blank, nullptr, 10);
        std::string answer = name_ + ":" + text;
        long copies = 1;
        if (verb == "die") {
            _exit(1);
        } else if (verb == "size") {
            answer.assign(static_cast<std::size_t>(number), 'r');
        } else if (verb == "sleep") {
            std::this_thread::sleep_for(std::chrono::milliseconds(number));
        } else if (verb == "repeat") {
            copies = number;
        } else if (verb == "dump") {
            unsigned long sum = 0;
            for (DDS_Long index = 0; index < DDS_OctetSeq_get_length(&question.octets); ++index) {
                sum += DDS_OctetSeq_get(&question.octets, index);
            }
            answer = std::to_string(DDS_OctetSeq_get_length(&question.octets)) + " " +
                     std::to_string(sum);
        }
        DDS_String_replace(&answer_.text, answer.c_str());
        for (long copy = 0; copy < copies; ++copy) {
            answer_.number = static_cast<DDS_Long>(copy);
            DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
            ZUV_Talvane_ReplierUntypedImpl_send_sample(replier_->_impl, &answer_, &identity,
                                                       &params);
        }
    }

    std::string name_;
    DDS_DomainParticipant *participant_ = nullptr;
    ZUV_Talvane_Replier *replier_ = nullptr;
    Test_Answer answer_;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        return 2;
    }
    Service service(std::atoi(argv[1]), argv[2]);
    if (!service.isReady()) {
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    std::thread watcher([] {
        while (std::getchar() != EOF) {
        }
        isStopping = true;
    });
    service.serve();
    watcher.join();
    return 0;
}
