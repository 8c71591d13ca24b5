// The record behind a requester or replier, and what both kinds are built from.
#ifndef ZUV_PLATFORM_TALVANE_ENTITY_IMPL_HPP
#define ZUV_PLATFORM_TALVANE_ENTITY_IMPL_HPP

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>

#include "platform/dds/ReaderObserver.hpp"
#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/talvane/Entity.h"

#define ZUV_TALVANE_REPORT(...)                                                                    \
    ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TALVANE, __VA_ARGS__)
#define ZUV_TALVANE_REPORT_TEMPLATE(...)                                                           \
    ZUV_LOG_TEMPLATE(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TALVANE, __VA_ARGS__)

// if (ZUV_TALVANE_IS_NULL(data)) return DDS_RETCODE_BAD_PARAMETER;   True, after the report, for NULL.
#define ZUV_TALVANE_IS_NULL(argument)                                                              \
    ((argument) == nullptr && zuv::talvane::reportNull(__func__, #argument))

namespace zuv::talvane
{

// Always true.
bool reportNull(const char *function, const char *argument);

// The end of a wait: nothing for one without an end.
using Deadline = std::optional<std::chrono::steady_clock::time_point>;
Deadline deadlineAfter(const DDS_Duration_t &wait);

// Wait for `condition`, woken through `changed`; its value at the end. Signals do not end it.
template <typename Condition>
bool waitUntil(std::condition_variable &changed, std::unique_lock<std::mutex> &lock,
               const Deadline &deadline, Condition condition)
{
    if (deadline) {
        return changed.wait_until(lock, *deadline, condition);
    }
    changed.wait(lock, condition);
    return true;
}

class Inbox;    // a requester's
class Doorbell; // a replier's
class ListenerGate;

// Both types of an entity, and how they become known.
struct EntityTypes {
    ZUV_Talvane_RegisterTypeFunction registerRequest;
    const char *requestTypeName;
    ZUV_Talvane_RegisterTypeFunction registerReply;
    const char *replyTypeName;
};

enum class Role { kRequester, kReplier };

// Register the types, make or find the topics, make the reader and then the writer. On failure, after reports, the
// entity has neither. The listener, if there is one, is not called before the gate is opened.
DDS_ReturnCode_t openEntity(ZUV_Talvane_EntityUntypedImpl &entity, Role role,
                            const ZUV_Talvane_EntityParams &params, const EntityTypes &types,
                            const DDS_DataReaderListener *readerListener);

// Delete writer and reader. DDS_RETCODE_PRECONDITION_NOT_MET, and nothing done, while samples are on loan. May be
// repeated after a failure.
DDS_ReturnCode_t closeEntity(ZUV_Talvane_EntityUntypedImpl &entity);

} // namespace zuv::talvane

struct ZUV_Talvane_EntityUntypedImpl {
    ZUV_Talvane_EntityUntypedImpl();
    ~ZUV_Talvane_EntityUntypedImpl();
    ZUV_Talvane_EntityUntypedImpl(const ZUV_Talvane_EntityUntypedImpl &) = delete;
    ZUV_Talvane_EntityUntypedImpl &operator=(const ZUV_Talvane_EntityUntypedImpl &) = delete;

    DDS_DataWriter *writer = nullptr;
    DDS_DataReader *reader = nullptr;
    DDS_UnsignedLong receivedSize = 0; // of a sample that is read, in memory
    DDS_Duration_t matchWait = {0, 0}; // a replier's: how long a reply waits for its requester
    std::unique_ptr<zuv::talvane::Inbox> inbox;
    std::unique_ptr<zuv::talvane::Doorbell> doorbell;
    std::unique_ptr<zuv::talvane::ListenerGate> gate;
};

#endif
