// What the participant factory knows beside the making of participants: their names, and the workers' factory.
#include <algorithm>
#include <cstring>
#include <mutex>

#include "EntityImpl.hpp"
#include "Report.hpp"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/mavo/WorkerFactory.h"
#include "platform/osapi/Fault.h"

namespace
{

constexpr int kWorkersAtStart = 2;

bool isNamed(const DDS_DomainParticipant &participant, const char *name)
{
    const char *known = participant.qos.value.participant_name.name;
    return known != nullptr && std::strcmp(known, name) == 0;
}

} // namespace

DDS_DomainParticipantFactory::~DDS_DomainParticipantFactory()
{
    if (workerFactory != nullptr) {
        MAVOWorkerFactory_delete(workerFactory);
    }
}

DDS_DomainParticipant *
DDS_DomainParticipantFactory_lookup_participant_by_name(DDS_DomainParticipantFactory *self,
                                                        const char *name)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(name)) {
        return nullptr;
    }
    const std::lock_guard lock(self->mutex);
    const auto found = std::find_if(self->participants.begin(), self->participants.end(),
                                    [name](const auto *known) { return isNamed(*known, name); });
    return found != self->participants.end() ? *found : nullptr;
}

struct MAVOWorkerFactory *
DDS_DomainParticipantFactory_get_worker_factoryI(DDS_DomainParticipantFactory *self, DDS_Long index)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return nullptr;
    }
    if (index != 0) {
        ZUV_DDS_REPORT(&DDS_LOG_BAD_PARAMETER_s, "index");
        return nullptr;
    }
    const std::lock_guard lock(self->mutex);
    if (self->workerFactory == nullptr && !ZUV_OSAPI_FAULT("dds.get_worker_factory")) {
        self->workerFactory = MAVOWorkerFactory_new(kWorkersAtStart);
    }
    if (self->workerFactory == nullptr) {
        ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "worker factory");
    }
    return self->workerFactory;
}
