#include "config/CfgFileJvm.h"

#include "config/ElementRecord.hpp"

namespace
{

using Object = ZUVXMLUTILSObject;

DDS_Long countChildren(const Object *parent)
{
    DDS_Long count = 0;
    for (const Object *child = ZUVXMLUTILSObject_getFirstChild(parent); child != nullptr;
         child = ZUVXMLUTILSObject_getNextSibling(child)) {
        ++count;
    }
    return count;
}

// The texts of the children "element" of the list, if there is one.
bool parseList(const Object *xmlJvm, const char *tag, const char *name, DDS_StringSeq &list)
{
    const Object *const xmlList = ZUVXMLUTILSObject_getFirstChildWithTag(xmlJvm, tag);
    if (xmlList == nullptr) {
        return true;
    }
    const DDS_Long childCount = countChildren(xmlList);
    if (!DDS_StringSeq_ensure_length(&list, 0, childCount)) {
        BREL_ELEMENT_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_ARRAY_dd, childCount,
                             static_cast<int>(sizeof(char *)));
        return false;
    }
    DDS_Long length = 0;
    for (const Object *child = ZUVXMLUTILSObject_getFirstChildWithTag(xmlList, "element");
         child != nullptr; child = ZUVXMLUTILSObject_getNextSiblingWithTag(child, "element")) {
        ++length;
        if (!DDS_StringSeq_set_length(&list, length) ||
            DDS_String_replace(DDS_StringSeq_get_reference(&list, length - 1),
                               ZUVXMLUTILSObject_getText(child)) == nullptr) {
            BREL_ELEMENT_FAILURE(&DDS_LOG_SEQUENCE_SET_LENGTH_FAILED_sd, name, length);
            return false;
        }
    }
    return true;
}

} // namespace

extern "C" {

int BRELCfgFileJvm_initialize(BRELCfgFileJvm *self)
{
    if (BREL_ELEMENT_IS_NULL(self)) {
        return 0;
    }
    *self = {};
    return 1;
}

int BRELCfgFileJvm_parse(BRELCfgFileJvm *self, const ZUVXMLUTILSObject *xmlJvm)
{
    if (BREL_ELEMENT_IS_NULL(self) || BREL_ELEMENT_IS_NULL(xmlJvm)) {
        return 0;
    }
    return brel::replaceByChild(xmlJvm, "dll", self->dll) &&
           parseList(xmlJvm, "class_path", "classPath", self->classPath) &&
           parseList(xmlJvm, "options", "options", self->options);
}

BRELCfgFileJvm *BRELCfgFileJvm_copy(BRELCfgFileJvm *self, const BRELCfgFileJvm *src)
{
    if (BREL_ELEMENT_IS_NULL(self) || BREL_ELEMENT_IS_NULL(src) ||
        !brel::replaceText(self->dll, src->dll)) {
        return nullptr;
    }
    if (DDS_StringSeq_copy(&self->classPath, &src->classPath) == nullptr ||
        DDS_StringSeq_copy(&self->options, &src->options) == nullptr) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_COPY_TEMPLATE, "JVM settings");
        return nullptr;
    }
    return self;
}

void BRELCfgFileJvm_finalize(BRELCfgFileJvm *self)
{
    if (BREL_ELEMENT_IS_NULL(self)) {
        return;
    }
    brel::freeText(self->dll);
    DDS_StringSeq_finalize(&self->classPath);
    DDS_StringSeq_finalize(&self->options);
}
}
