#include "platform/ddsxml/DistLogger.h"

#include <cstddef>
#include <utility>

#include "platform/ddsxml/ExtensionClass.hpp"
#include "platform/ddsxml/QosReader.hpp"
#include "platform/ddsxml/XmlLog.hpp"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Object.hpp"

namespace
{

using zuv::dds::QosEffect;
using zuv::dds::QosField;
using zuv::dds::QosFieldKind;

constexpr zuv::dds::QosEnumerator kLevelNames[] = {
    {"FATAL", ZUV_DL_FATAL_LEVEL},
    {"EXCEPTION", ZUV_DL_EXCEPTION_LEVEL},
    {"WARNING", ZUV_DL_WARNING_LEVEL},
    {"INFORMATION", ZUV_DL_INFORMATION_LEVEL},
};
constexpr zuv::dds::QosNames kLevels = {"distributedLoggerLevel", kLevelNames};
constexpr zuv::dds::QosRange kQueueSizes = {"distributedLoggerQueueSize", 1, false};

#define AT(field) offsetof(ZUV_DL_Options, field)

constexpr QosField kOptionFields[] = {
    {"enabled", QosFieldKind::kBoolean, AT(enabled), QosEffect::kSystem, ""},
    {"level", QosFieldKind::kEnum, AT(level), QosEffect::kSystem, "", 0, {}, &kLevels},
    {"queue_size",
     QosFieldKind::kLong,
     AT(queueSize),
     QosEffect::kSystem,
     "",
     0,
     {},
     nullptr,
     &kQueueSizes},
    {"local_output", QosFieldKind::kBoolean, AT(localOutput), QosEffect::kSystem, ""},
};

#undef AT

constexpr zuv::dds::QosPolicy kOptions = {"distributed_logger", "distributedLogger", false,
                                          kOptionFields};

constexpr ZUV_DL_Options kDefaults = {DDS_BOOLEAN_TRUE, ZUV_DL_WARNING_LEVEL, 128,
                                      DDS_BOOLEAN_TRUE};

void readOptions(ZUVXMLObject &element)
{
    zuv::xmlutils::HeapPointer<ZUV_DL_Options> options(
        zuv::xmlutils::heapNew<ZUV_DL_Options>(kDefaults));
    zuv::ddsxml::readPolicy(kOptions, element, options.get(), "");
    element.loggerOptions = std::move(options);
}

} // namespace

extern "C" {

ZUV_DL_Options *ZUV_DL_Options_createDefault(void)
{
    ZUV_DL_Options *const self = zuv::newObject<ZUV_DL_Options>("dds xml", kDefaults);
    if (self == nullptr) {
        ZUV_DDSXML_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                           static_cast<int>(sizeof(ZUV_DL_Options)));
    }
    return self;
}

int ZUV_DL_Options_copy(ZUV_DL_Options *self, const ZUV_DL_Options *source)
{
    if (ZUV_DDSXML_IS_NULL(self) || ZUV_DDSXML_IS_NULL(source)) {
        return 0;
    }
    *self = *source;
    return 1;
}

void ZUV_DL_Options_delete(ZUV_DL_Options *self)
{
    zuv::deleteObject(self);
}

const ZUV_DL_Options *ZUV_DL_XMLConfig_getDLOptions(const ZUVXMLObject *self)
{
    return ZUV_DDSXML_IS_NULL(self) ? nullptr : self->loggerOptions.get();
}

ZUVXMLExtensionClass *ZUV_DL_XMLConfig_createXMLExtensionClass(ZUV_DL_XMLConfigErrorFcn onError)
{
    if (ZUV_DDSXML_IS_NULL(onError)) {
        return nullptr;
    }
    ZUVXMLExtensionClass *const self =
        ZUV_OSAPI_FAULT("ddsxml.distributed_logger")
            ? nullptr
            : zuv::newObject<ZUVXMLExtensionClass>("dds xml", "distributed_logger", onError,
                                                   readOptions);
    if (self == nullptr) {
        ZUV_DDSXML_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                           static_cast<int>(sizeof(ZUVXMLExtensionClass)));
    }
    return self;
}

void ZUV_DL_XMLConfig_destroyXMLExtensionClass(ZUVXMLExtensionClass *self)
{
    zuv::deleteObject(self);
}
}
