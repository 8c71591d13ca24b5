#include "common/ServiceParticipantFactory.h"

#include <cstring>

#include "log/Log.h"
#include "platform/dds/DomainParticipant.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/String.h"

#define BREL_FACTORY_FAILURE(...)                                                                  \
    ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_PARTICIPANT_FACTORY, __VA_ARGS__)
#define BREL_FACTORY_IS_NULL(ARGUMENT)                                                             \
    ZUV_PRECONDITION(BREL, BREL_SUBMODULE_PARTICIPANT_FACTORY, (ARGUMENT) == nullptr,              \
                     #ARGUMENT " == ((void *)0)")

namespace
{

constexpr const char *kTag = "BRELParticipantInfo";

struct BRELParticipantInfo {
    MAVOInlineListNode _node;
    char *participantName; // the key of the list
    DDS_DomainParticipant *participant;
    int participantAssertionCount;
};

BRELParticipantInfo *infoOf(MAVOInlineListNode *node)
{
    return reinterpret_cast<BRELParticipantInfo *>(node);
}

// NULL when there is none.
BRELParticipantInfo *findInfo(const BRELServiceParticipantFactory &self,
                              const char *participantName)
{
    MAVOInlineListNode *node = MAVOInlineList_getFirst(&self._participantInfoList);
    while (node != nullptr && std::strcmp(infoOf(node)->participantName, participantName) != 0) {
        node = MAVOInlineListNode_getNext(node);
    }
    return node != nullptr ? infoOf(node) : nullptr;
}

// At the back of the list, without a participant. NULL when there is no memory.
BRELParticipantInfo *addInfo(BRELServiceParticipantFactory &self, const char *participantName)
{
    auto *info = static_cast<BRELParticipantInfo *>(
        ZUVOsapiHeap_allocateZeroed(sizeof(BRELParticipantInfo), kTag));
    if (info == nullptr) {
        return nullptr;
    }
    info->participantName = DDS_String_dup(participantName);
    if (info->participantName == nullptr) {
        ZUVOsapiHeap_free(info);
        return nullptr;
    }
    MAVOInlineList_addNodeToBackEA(&self._participantInfoList, &info->_node);
    return info;
}

void removeInfo(BRELServiceParticipantFactory &self, BRELParticipantInfo *info)
{
    MAVOInlineList_removeNodeEA(&self._participantInfoList, &info->_node);
    DDS_String_free(info->participantName);
    ZUVOsapiHeap_free(info);
}

} // namespace

extern "C" {

int BRELServiceParticipantFactory_initialize(BRELServiceParticipantFactory *self,
                                             DDS_DomainParticipantFactory *factory)
{
    if (BREL_FACTORY_IS_NULL(self) || BREL_FACTORY_IS_NULL(factory)) {
        return 0;
    }
    *self = {};
    self->_factory = factory;
    MAVOInlineList_initialize(&self->_participantInfoList);
    return 1;
}

void BRELServiceParticipantFactory_finalize(BRELServiceParticipantFactory *self)
{
    (void)BREL_FACTORY_IS_NULL(self);
}

DDS_DomainParticipant *
BRELServiceParticipantFactory_assertParticipant(BRELServiceParticipantFactory *self,
                                                const char *participantName, DDS_Long domainId,
                                                const DDS_DomainParticipantQos *participantQos)
{
    if (BREL_FACTORY_IS_NULL(self) || BREL_FACTORY_IS_NULL(participantName) ||
        BREL_FACTORY_IS_NULL(participantQos)) {
        return nullptr;
    }
    BRELParticipantInfo *info = findInfo(*self, participantName);
    if (info != nullptr) {
        ++info->participantAssertionCount;
        return info->participant;
    }
    DDS_DomainParticipant *participant =
        DDS_DomainParticipantFactory_lookup_participant_by_name(self->_factory, participantName);
    if (participant != nullptr) {
        return participant;
    }
    info = addInfo(*self, participantName);
    if (info == nullptr) {
        BREL_FACTORY_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "BRELParticipantInfo");
        return nullptr;
    }
    info->participant = DDS_DomainParticipantFactory_create_participant(self->_factory, domainId,
                                                                        participantQos, nullptr, 0);
    if (info->participant == nullptr) {
        BREL_FACTORY_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "DomainParticipant");
        removeInfo(*self, info);
        return nullptr;
    }
    info->participantAssertionCount = 1;
    return info->participant;
}

int BRELServiceParticipantFactory_addParticipant(BRELServiceParticipantFactory *self,
                                                 const char *participantName,
                                                 DDS_DomainParticipant *participant)
{
    if (BREL_FACTORY_IS_NULL(self) || BREL_FACTORY_IS_NULL(participantName) ||
        BREL_FACTORY_IS_NULL(participant)) {
        return 0;
    }
    if (findInfo(*self, participantName) != nullptr) {
        BREL_FACTORY_FAILURE(&ZUV_LOG_ANY_s, "participant already exists in this factory");
        return 0;
    }
    if (DDS_DomainParticipantFactory_lookup_participant_by_name(self->_factory, participantName) !=
        nullptr) {
        BREL_FACTORY_FAILURE(&ZUV_LOG_ANY_s,
                             "participant already exits in Domain Participant Factory");
        return 0;
    }
    BRELParticipantInfo *info = addInfo(*self, participantName);
    if (info == nullptr) {
        BREL_FACTORY_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "BRELParticipantInfo");
        return 0;
    }
    info->participant = participant;
    info->participantAssertionCount = 1;
    return 1;
}

DDS_DomainParticipant *
BRELServiceParticipantFactory_lookUpParticipant(BRELServiceParticipantFactory *self,
                                                const char *participantName)
{
    if (BREL_FACTORY_IS_NULL(self) || BREL_FACTORY_IS_NULL(participantName)) {
        return nullptr;
    }
    const BRELParticipantInfo *info = findInfo(*self, participantName);
    return info != nullptr ? info->participant
                           : DDS_DomainParticipantFactory_lookup_participant_by_name(
                                 self->_factory, participantName);
}

int BRELServiceParticipantFactory_deleteParticipant(BRELServiceParticipantFactory *self,
                                                    const char *participantName)
{
    if (BREL_FACTORY_IS_NULL(self) || BREL_FACTORY_IS_NULL(participantName)) {
        return 0;
    }
    BRELParticipantInfo *info = findInfo(*self, participantName);
    if (info == nullptr) {
        return 1;
    }
    // Below 0 after a failed deletion: no second attempt then.
    if (--info->participantAssertionCount != 0) {
        return 1;
    }
    if (DDS_DomainParticipant_delete_contained_entities(info->participant) != DDS_RETCODE_OK) {
        BREL_FACTORY_FAILURE(&ZUV_LOG_DESTRUCTION_FAILURE_s, "participant contained entities");
        return 0;
    }
    if (DDS_DomainParticipantFactory_delete_participant(self->_factory, info->participant) !=
        DDS_RETCODE_OK) {
        BREL_FACTORY_FAILURE(&ZUV_LOG_DESTRUCTION_FAILURE_s, "DomainParticipant");
        return 0;
    }
    removeInfo(*self, info);
    return 1;
}
}
