#include "config/XmlVariableExpansor.h"

#include <cstring>
#include <unordered_map>

#include "config/XmlCommon.h"
#include "config/XmlLog.hpp"
#include "config/XmlProperties.hpp"
#include "platform/mavo/String.h"
#include "platform/xmlutils/Memory.hpp"

using zuv::xmlutils::HeapAllocator;

namespace
{

// In documents names are equal without regard to case, since a definition replaces one that differs in case. The bit in
// which letters of one name may differ does not count, whatever the locale says of letters.
struct Hash {
    static constexpr unsigned char kCaseBit = 'a' ^ 'A';

    std::size_t operator()(const char *name) const
    {
        std::size_t hash = 5381;
        for (; *name != '\0'; ++name) {
            hash = hash * 33 + (static_cast<unsigned char>(*name) | kCaseBit);
        }
        return hash;
    }
};
struct Equal {
    bool operator()(const char *left, const char *right) const
    {
        return MAVOString_iCompare(left, right) == 0;
    }
};

} // namespace

// A list is searched from its start; documents may define and use as many variables as they like.
struct BRELXmlVariableNames {
    using Places = std::unordered_map<const char *, int, Hash, Equal,
                                      HeapAllocator<std::pair<const char *const, int>>>;

    // The names are those of the list, which may have grown since.
    const ZUV_BrelServiceNameValue *find(const ZUV_BrelServiceProperties &list, const char *name)
    {
        for (; count < list.count; ++count) {
            places.emplace(list.properties[count].name, count);
        }
        const auto found = places.find(name);
        return found != places.end() ? &list.properties[found->second] : nullptr;
    }

    Places places;
    int count = 0; // of the list's entries, those that have their places
};

namespace
{

constexpr const char *kVariablesTag = "configuration_variables";

// Names are those of the service's own settings: case counts.
const char *valueOfUser(const void *source, const char *name)
{
    return static_cast<const char *>(ZUV_BrelServiceProperties_lookup_property(
        static_cast<const ZUV_BrelServiceProperties *>(source), name));
}

// The entry of that name, or null. Without memory the list is searched from its start.
const ZUV_BrelServiceNameValue *find(const BRELXmlVariableExpansor &self, const char *name)
{
    const ZUV_BrelServiceProperties &list = self._xmlUserEnv;
    try {
        return self._names->find(list, name);
    } catch (const std::bad_alloc &) {
        return ZUV_BrelServiceProperties_lookupProperty(&list, name);
    }
}

const char *valueOfDocuments(const void *source, const char *name)
{
    const ZUV_BrelServiceNameValue *const entry =
        find(*static_cast<const BRELXmlVariableExpansor *>(source), name);
    return entry != nullptr ? static_cast<const char *>(entry->value) : nullptr;
}

// As BRELXmlProperty_parse, without searching from the start for each name.
bool define(BRELXmlVariableExpansor &self, const ZUVXMLUTILSObject *xmlVariables)
{
    return brel::readProperties(xmlVariables, [&](const char *name, const char *value) {
        const ZUV_BrelServiceNameValue *const entry = find(self, name);
        if (entry == nullptr) {
            return ZUV_BrelServiceProperties_add(&self._xmlUserEnv, name, value);
        }
        ZUV_BrelServiceProperties only = {const_cast<ZUV_BrelServiceNameValue *>(entry), 1,
                                          self._xmlUserEnv.string_values};
        return ZUV_BrelServiceProperties_assert(&only, name, value);
    });
}

BRELXmlVariableNames *newNames()
{
    try {
        return zuv::xmlutils::heapNew<BRELXmlVariableNames>();
    } catch (const std::bad_alloc &) {
        BREL_XML_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                         static_cast<int>(sizeof(BRELXmlVariableNames)));
        return nullptr;
    }
}

bool definesVariables(const ZUVXMLUTILSObject *xmlObject)
{
    const ZUVXMLUTILSObject *const parent = ZUVXMLUTILSObject_getParent(xmlObject);
    return parent != nullptr && ZUVXMLUTILSObject_getParent(parent) == nullptr &&
           std::strcmp(ZUVXMLUTILSObject_getTagName(xmlObject), kVariablesTag) == 0;
}

bool readDefinitions(const ZUVXMLUTILSObject *root, BRELXmlVariableExpansor &self)
{
    const ZUVXMLUTILSObject *child =
        root != nullptr ? ZUVXMLUTILSObject_getFirstChildWithTag(root, kVariablesTag) : nullptr;
    for (; child != nullptr;
         child = ZUVXMLUTILSObject_getNextSiblingWithTag(child, kVariablesTag)) {
        if (!define(self, child)) {
            BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(child));
            return false;
        }
    }
    return true;
}

} // namespace

extern "C" {

int BRELXmlVariableExpansor_initialize(BRELXmlVariableExpansor *self,
                                       const ZUV_BrelServiceProperties *userEnv,
                                       const ZUVXMLUTILSObject *xmlExistingRoot)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(userEnv)) {
        return 0;
    }
    *self = {};
    if (!ZUV_BrelServiceProperties_initialize(&self->_xmlUserEnv)) {
        BREL_XML_FAILURE(&ZUV_LOG_INIT_FAILURE_s, "xml user environment");
        return 0;
    }
    self->_names = newNames();
    if (self->_names == nullptr ||
        !ZUVXMLUTILSVariableExpansor_initialize(&self->_expansor, userEnv, &valueOfUser, self,
                                                &valueOfDocuments) ||
        !readDefinitions(xmlExistingRoot, *self)) {
        BRELXmlVariableExpansor_finalize(self);
        return 0;
    }
    self->_visitor = {self, &BRELXmlVariableExpansor_visit};
    return 1;
}

void BRELXmlVariableExpansor_forget(BRELXmlVariableExpansor *self)
{
    if (BREL_XML_IS_NULL(self)) {
        return;
    }
    if (self->_names != nullptr) {
        *self->_names = {};
    }
    ZUV_BrelServiceProperties_finalize(&self->_xmlUserEnv);
}

void BRELXmlVariableExpansor_finalize(BRELXmlVariableExpansor *self)
{
    if (!BREL_XML_IS_NULL(self)) {
        BRELXmlVariableExpansor_forget(self);
        zuv::xmlutils::heapDelete(self->_names);
        self->_names = nullptr;
    }
}

int BRELXmlVariableExpansor_visit(void *visitorData, ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(visitorData) || BREL_XML_IS_NULL(xmlObject)) {
        return 0;
    }
    auto *const self = static_cast<BRELXmlVariableExpansor *>(visitorData);
    if ((definesVariables(xmlObject) && !define(*self, xmlObject)) ||
        !self->_expansor.visitor.visit(self->_expansor.visitor.visitorData, xmlObject)) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(xmlObject));
        return 0;
    }
    return 1;
}
}
