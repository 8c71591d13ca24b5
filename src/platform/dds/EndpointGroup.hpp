// What publishers do with their writers and subscribers with their readers, which is the same.
//
// A Kind names the two records and the middleware's share:
//   Group, Endpoint, Topic, Qos, Listener, Adapter   types
//   kName, kStranger, kContained                      for reports
//   kTag, kCreateFault                                for the heap and for fault points
//   kList, kGroup                                     the members that lead from one to the other
//   isDefault, getDefault                             of the QoS
//   makeStore(endpoint), create(endpoint)             the endpoint's parts, null on failure
//   destroy(endpoint)
//
// `function` is the exported operation in whose name is reported.
#ifndef ZUV_PLATFORM_DDS_ENDPOINT_GROUP_HPP
#define ZUV_PLATFORM_DDS_ENDPOINT_GROUP_HPP

#include <algorithm>

#include "platform/dds/Conversions.hpp"
#include "platform/dds/EntityImpl.hpp"
#include "platform/dds/Report.hpp"
#include "platform/osapi/Fault.h"

namespace zuv::dds
{

template <typename Kind>
typename Kind::Endpoint *makeEndpoint(typename Kind::Group &group, typename Kind::Topic &topic,
                                      const typename Kind::Qos &qos,
                                      const typename Kind::Listener *listener, DDS_StatusMask mask)
{
    HeapOwner<typename Kind::Endpoint> made(heapNew<typename Kind::Endpoint>(Kind::kTag));
    if (made == nullptr) {
        return nullptr;
    }
    made.get()->*Kind::kGroup = &group;
    made->factory = &group;
    made->topic = &topic;
    made->adapter = std::make_unique<typename Kind::Adapter>(*made, listener, mask);
    const DDS_ReturnCode_t code =
        Kind::isDefault(&qos) ? Kind::getDefault(&made->qos.value) : made->qos.assign(qos);
    if (code == DDS_RETCODE_OK) {
        made->store = Kind::makeStore(*made);
    }
    if (made->store == nullptr || ZUV_OSAPI_FAULT(Kind::kCreateFault)) {
        return nullptr;
    }
    made->fast = Kind::create(*made);
    if (made->fast == nullptr) {
        return nullptr;
    }
    made->fastEntity = made->fast;
    made->handle = toOurs(made->fast->get_instance_handle());
    useTopic(topic, 1);
    typename Kind::Endpoint *const endpoint = made.get();
    {
        const std::lock_guard lock(group.mutex);
        (group.*Kind::kList).push_back(endpoint);
        made.release();
    }
    endpoint->adapter->open();
    return endpoint;
}

template <typename Kind>
typename Kind::Endpoint *createEndpoint(const char *function, typename Kind::Group *self,
                                        typename Kind::Topic *topic, const typename Kind::Qos *qos,
                                        const typename Kind::Listener *listener,
                                        DDS_StatusMask mask)
{
    if (isNull(function, self, "self") || isNull(function, topic, "topic") ||
        isNull(function, qos, "qos")) {
        return nullptr;
    }
    typename Kind::Endpoint *made = nullptr;
    if (topic->participant != self->participant) {
        reportAs(function, DDS_LOG_BAD_PARAMETER_s, "topic");
    } else {
        made = guarded<typename Kind::Endpoint *>("create endpoint", nullptr, [&] {
            return makeEndpoint<Kind>(*self, *topic, *qos, listener, mask);
        });
    }
    if (made == nullptr) {
        reportAs(function, ZUV_LOG_CREATION_FAILURE_s, Kind::kName);
    }
    return made;
}

template <typename Kind>
DDS_ReturnCode_t deleteEndpoint(const char *function, typename Kind::Group *self,
                                typename Kind::Endpoint *endpoint)
{
    if (isNull(function, self, "self") || isNull(function, endpoint, Kind::kName)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const std::lock_guard lock(self->mutex);
    auto &list = self->*Kind::kList;
    const auto known = std::find(list.begin(), list.end(), endpoint);
    if (known == list.end()) {
        reportAs(function, ZUV_LOG_DESTRUCTION_FAILURE_s, Kind::kStranger);
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    const DDS_ReturnCode_t code = Kind::destroy(endpoint);
    if (code == DDS_RETCODE_OK) {
        list.erase(known);
    }
    return code;
}

template <typename Kind>
DDS_ReturnCode_t deleteEndpoints(const char *function, typename Kind::Group *self)
{
    if (isNull(function, self, "self")) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const std::lock_guard lock(self->mutex);
    auto &list = self->*Kind::kList;
    while (!list.empty()) {
        const DDS_ReturnCode_t code = Kind::destroy(list.back());
        if (code != DDS_RETCODE_OK) {
            reportAs(function, ZUV_LOG_DESTRUCTION_FAILURE_s, Kind::kContained);
            return code;
        }
        list.pop_back();
    }
    return DDS_RETCODE_OK;
}

} // namespace zuv::dds

#endif
