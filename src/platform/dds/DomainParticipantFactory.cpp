#include "platform/dds/DomainParticipantFactory.h"

#include <algorithm>
#include <mutex>
#include <vector>

#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/domain/DomainParticipantFactory.hpp>
#include <fastrtps/xmlparser/XMLProfileManager.h>

#include "ArrivalGate.hpp"
#include "Conversions.hpp"
#include "EntityImpl.hpp"
#include "FastLog.hpp"
#include "FilterClass.hpp"
#include "Loopback.hpp"
#include "Ports.hpp"
#include "QosMapping.hpp"
#include "Report.hpp"
#include "platform/osapi/Fault.h"

namespace fast = eprosima::fastdds::dds;
using zuv::dds::guarded;
using zuv::dds::heapDelete;
using zuv::dds::heapNew;
using zuv::dds::toOurs;

namespace
{

constexpr DDS_Long kGreatestDomainId = 232; // beyond it the ports run out (DDSI-RTPS 2.5, 9.6.2.3)

std::mutex factoryMutex;
DDS_DomainParticipantFactory *theFactory = nullptr;

// Also within the process. The middleware's shortcut keeps pointers to the readers of other participants of the process
// and uses them after these have been deleted, until it hears that they are.
bool deliverThroughTransports()
{
    eprosima::fastrtps::LibrarySettingsAttributes settings;
    settings.intraprocess_delivery = eprosima::fastrtps::INTRAPROCESS_OFF;
    eprosima::fastrtps::xmlparser::XMLProfileManager::library_settings(settings);
    return true;
}

fast::DomainParticipant *createFast(DDS_Long domainId, const DDS_DomainParticipantQos &qos,
                                    int portSlot)
{
    if (ZUV_OSAPI_FAULT("dds.create_participant")) {
        return nullptr;
    }
    fast::DomainParticipantFactory *const factory = fast::DomainParticipantFactory::get_instance();
    // Once, and before the profiles, which may tell otherwise.
    [[maybe_unused]] static const bool isTold = deliverThroughTransports();
    factory->load_profiles();
    fast::DomainParticipantQos fastQos = factory->get_default_participant_qos();
    zuv::dds::applyLoopbackUnlessConfigured(fastQos);
    zuv::dds::useDiscoveryPort(domainId, portSlot, fastQos);
    zuv::dds::useDataPort(domainId, fastQos);
    zuv::dds::mapQos(qos, fastQos);
    const auto gate = zuv::dds::putGateBehind(fastQos.transport());
    fast::DomainParticipant *const made =
        factory->create_participant(static_cast<fast::DomainId_t>(domainId), fastQos);
    gate->open();
    return made;
}

// The record, then the middleware's participant, then the list.
DDS_DomainParticipant *makeParticipant(DDS_DomainParticipantFactory &factory, DDS_Long domainId,
                                       const DDS_DomainParticipantQos &qos)
{
    auto *const made = heapNew<DDS_DomainParticipant>("DDS DomainParticipant");
    if (made == nullptr) {
        return nullptr;
    }
    made->domainId = domainId;
    DDS_ReturnCode_t code = &qos == &DDS_PARTICIPANT_QOS_DEFAULT
                                ? DDS_DomainParticipantQos_get_defaultI(&made->qos.value)
                                : made->qos.assign(qos);
    if (code == DDS_RETCODE_OK) {
        code = DDS_TopicQos_get_defaultI(&made->defaultTopicQos.value);
    }
    if (code == DDS_RETCODE_OK) {
        made->portSlot = zuv::dds::reservePortSlot(domainId);
        made->fast = guarded<fast::DomainParticipant *>("join the domain", nullptr, [made] {
            return createFast(made->domainId, made->qos.value, made->portSlot);
        });
    }
    if (made->fast == nullptr) {
        zuv::dds::releasePortSlot(domainId, made->portSlot);
        heapDelete(made);
        return nullptr;
    }
    made->fastEntity = made->fast;
    made->handle = toOurs(made->fast->get_instance_handle());
    const std::lock_guard lock(factory.mutex);
    factory.participants.push_back(made);
    return made;
}

} // namespace

DDS_DomainParticipant::~DDS_DomainParticipant() = default;

DDS_DomainParticipantFactory *DDS_DomainParticipantFactory_get_instance(void)
{
    const std::lock_guard lock(factoryMutex);
    if (theFactory == nullptr) {
        zuv::dds::routeFastLog();
        if (!ZUV_OSAPI_FAULT("dds.get_factory")) {
            theFactory = heapNew<DDS_DomainParticipantFactory>("DDS DomainParticipantFactory");
        }
        if (theFactory == nullptr) {
            ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "participant factory");
        }
    }
    return theFactory;
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_finalize_instance(void)
{
    const std::lock_guard lock(factoryMutex);
    if (theFactory == nullptr) {
        return DDS_RETCODE_OK;
    }
    if (!theFactory->participants.empty()) {
        ZUV_DDS_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "participant factory that has participants");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    heapDelete(theFactory);
    theFactory = nullptr;
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t
DDS_DomainParticipantFactory_get_default_participant_qos(DDS_DomainParticipantFactory *self,
                                                         DDS_DomainParticipantQos *qos)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(qos)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return DDS_DomainParticipantQos_get_defaultI(qos);
}

DDS_DomainParticipant *DDS_DomainParticipantFactory_create_participant(
    DDS_DomainParticipantFactory *self, DDS_Long domainId, const DDS_DomainParticipantQos *qos,
    const struct DDS_DomainParticipantListener *listener, DDS_StatusMask)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(qos)) {
        return nullptr;
    }
    if (domainId < 0 || domainId > kGreatestDomainId || listener != nullptr) {
        ZUV_DDS_REPORT(&DDS_LOG_BAD_PARAMETER_s, listener != nullptr ? "listener" : "domainId");
        return nullptr;
    }
    auto *const participant = guarded<DDS_DomainParticipant *>(
        "create participant", nullptr, [&] { return makeParticipant(*self, domainId, *qos); });
    if (participant == nullptr) {
        ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "participant");
    }
    return participant;
}

DDS_ReturnCode_t DDS_DomainParticipantFactory_delete_participant(DDS_DomainParticipantFactory *self,
                                                                 DDS_DomainParticipant *participant)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(participant)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const std::lock_guard lock(self->mutex);
    const auto known = std::find(self->participants.begin(), self->participants.end(), participant);
    DDS_ReturnCode_t code = DDS_RETCODE_PRECONDITION_NOT_MET;
    if (known == self->participants.end()) {
        code = DDS_RETCODE_BAD_PARAMETER;
    } else if (ZUV_OSAPI_FAULT("dds.delete_participant")) {
        code = DDS_RETCODE_ERROR;
    } else if (participant->topics.empty() && participant->publishers.empty() &&
               participant->subscribers.empty()) {
        code = toOurs(
            fast::DomainParticipantFactory::get_instance()->delete_participant(participant->fast));
    }
    if (code != DDS_RETCODE_OK) {
        ZUV_DDS_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "participant");
        return code;
    }
    self->participants.erase(known);
    zuv::dds::releasePortSlot(participant->domainId, participant->portSlot);
    heapDelete(participant);
    return DDS_RETCODE_OK;
}
