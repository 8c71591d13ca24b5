// Which tags have records.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "config/CfgFileElement.h"
#include "config/CfgFileService.h"
#include "config/XmlLog.hpp"
#include "config/XmlSupport.hpp"
#include "platform/osapi/Object.hpp"
#include "platform/typesys/String.h"

namespace
{

using Extension = BRELXmlObjectExtension;

struct Builtin {
    const char *tagName;
    BRELXmlObjectExtension_NewObjectFcn newObject;
    BRELXmlObjectExtension_SetUpObjectFcn setUpObject;
    BRELXmlObjectExtension_DeleteObjectFcn deleteObject;
};

#define PLAIN(TAG)                                                                                 \
    {                                                                                              \
        TAG, &BRELCfgFileElement_new, nullptr, &BRELCfgFileElement_delete                          \
    }
#define WITH_SET_UP(TAG)                                                                           \
    {                                                                                              \
        TAG, &BRELCfgFileElement_new, &BRELCfgFileElement_setUp, &BRELCfgFileElement_delete        \
    }
#define SERVICE(TAG)                                                                               \
    {                                                                                              \
        TAG, &BRELCfgFileService_new, &BRELCfgFileService_setUp, &BRELCfgFileService_delete        \
    }
constexpr Builtin kBuiltins[] = {
    PLAIN("adapter_library"),      PLAIN("transformation_library"),
    PLAIN("plugin_library"),       PLAIN("adapter_plugin"),
    PLAIN("java_adapter_plugin"),  PLAIN("transformation_plugin"),
    PLAIN("processor_plugin"),     SERVICE("brel_service"),
    WITH_SET_UP("domain_route"),   WITH_SET_UP("connection"),
    WITH_SET_UP("participant"),    WITH_SET_UP("session"),
    WITH_SET_UP("route"),          WITH_SET_UP("topic_route"),
    WITH_SET_UP("auto_route"),     WITH_SET_UP("auto_topic_route"),
    WITH_SET_UP("input"),          WITH_SET_UP("dds_input"),
    WITH_SET_UP("output"),         WITH_SET_UP("dds_output"),
    WITH_SET_UP("transformation"), WITH_SET_UP("processor"),
};
static_assert(std::size(kBuiltins) == 22);

// Most elements of a document have no record, which the slot of their first letters mostly tells at once.
std::size_t slotOf(const char *tagName)
{
    const unsigned first = static_cast<unsigned char>(tagName[0]);
    const unsigned second = first != 0 ? static_cast<unsigned char>(tagName[1]) : 0;
    return (first * 5 + second) % BREL_XML_SUPPORT_EXTENSION_SLOT_COUNT;
}

Extension *newExtension(const Builtin &source)
{
    zuv::ObjectPointer<Extension> self(zuv::newObject<Extension>("XML extension"));
    if (self == nullptr) {
        BREL_XML_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                         static_cast<int>(sizeof(Extension)));
        return nullptr;
    }
    self->tagName = DDS_String_dup(source.tagName);
    if (self->tagName == nullptr) {
        BREL_XML_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d,
                         static_cast<int>(std::strlen(source.tagName)));
        return nullptr;
    }
    self->newObject = source.newObject;
    self->setUpObject = source.setUpObject;
    self->deleteObject = source.deleteObject;
    return self.release();
}

} // namespace

extern "C" {

BRELXmlObjectExtension *BRELCfgFileParser_lookUpExtension(const BRELCfgFileParser *self,
                                                          const char *tagName)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(tagName)) {
        return nullptr;
    }
    Extension *extension = self->_extensionSlots[slotOf(tagName)];
    while (extension != nullptr && std::strcmp(extension->tagName, tagName) != 0) {
        extension = extension->_nextOfSlot;
    }
    return extension;
}

int BRELCfgFileParser_registerExtension(BRELCfgFileParser *self, const char *tagName,
                                        BRELXmlObjectExtension_NewObjectFcn newObjectFcn,
                                        BRELXmlObjectExtension_SetUpObjectFcn setUpObjectFcn,
                                        BRELXmlObjectExtension_DeleteObjectFcn deleteObjectFcn)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(tagName) || BREL_XML_IS_NULL(newObjectFcn) ||
        BREL_XML_IS_NULL(deleteObjectFcn)) {
        return 0;
    }
    if (BRELCfgFileParser_lookUpExtension(self, tagName) != nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_ss, "an extension already exists with name=", tagName);
        return 0;
    }
    Extension *const extension =
        newExtension({tagName, newObjectFcn, setUpObjectFcn, deleteObjectFcn});
    if (extension == nullptr) {
        return 0;
    }
    Extension *&slot = self->_extensionSlots[slotOf(tagName)];
    extension->_nextOfSlot = slot;
    slot = extension;
    MAVOInlineList_addNodeToBackEA(&self->_registeredExtensions, &extension->_node);
    return 1;
}

void BRELCfgFileParser_unregisterExtension(BRELCfgFileParser *self,
                                           BRELXmlObjectExtension *extension)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(extension)) {
        return;
    }
    Extension **link = &self->_extensionSlots[slotOf(extension->tagName)];
    while (*link != nullptr && *link != extension) {
        link = &(*link)->_nextOfSlot;
    }
    if (*link != nullptr) {
        *link = extension->_nextOfSlot;
    }
    MAVOInlineList_removeNodeEA(&self->_registeredExtensions, &extension->_node);
    DDS_String_free(extension->tagName);
    zuv::deleteObject(extension);
}

int BRELCfgFileParser_registerBuiltinExtensions(BRELCfgFileParser *self)
{
    if (BREL_XML_IS_NULL(self)) {
        return 0;
    }
    for (const Builtin &builtin : kBuiltins) {
        if (!BRELCfgFileParser_registerExtension(self, builtin.tagName, builtin.newObject,
                                                 builtin.setUpObject, builtin.deleteObject)) {
            BREL_XML_FAILURE_TEXT("register extension with name=%s", builtin.tagName);
            return 0;
        }
    }
    return 1;
}
}
