#include "platform/ddsxml/DistLogger.h"

#include "platform/ddsxml/ExtensionClass.hpp"
#include "platform/ddsxml/XmlLog.hpp"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Object.hpp"

extern "C" {

ZUVXMLExtensionClass *ZUV_DL_XMLConfig_createXMLExtensionClass(ZUV_DL_XMLConfigErrorFcn onError)
{
    if (ZUV_DDSXML_IS_NULL(onError)) {
        return nullptr;
    }
    ZUVXMLExtensionClass *const self =
        ZUV_OSAPI_FAULT("ddsxml.distributed_logger")
            ? nullptr
            : zuv::newObject<ZUVXMLExtensionClass>("dds xml", "distributed_logger", onError);
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
