// Merges one element into another, all or nothing.
#ifndef ZUV_PLATFORM_XMLUTILS_UPDATE_HPP
#define ZUV_PLATFORM_XMLUTILS_UPDATE_HPP

#include <string_view>

#include "platform/xmlutils/Memory.hpp"
#include "platform/xmlutils/Tree.hpp"

namespace zuv::xmlutils
{

// ZUVXMLUTILSUtils_updateObject tells the rules. The constructor makes everything that is needed and changes
// nothing; the commit then needs no memory.
class Update
{
public:
    // Throws std::bad_alloc.
    Update(_xmlNode *target, const _xmlNode *update);
    ~Update();
    Update(const Update &) = delete;
    Update &operator=(const Update &) = delete;

    void commit();

private:
    struct NewAttribute {
        _xmlNode *element;
        _xmlAttr *attribute; // owned until committed
    };
    struct NewText {
        _xmlNode *element;
        NodePointer text; // null for none
    };
    struct NewChild {
        _xmlNode *parent;
        NodePointer child;
        _xmlNode *before;
    };
    struct List {
        std::string_view tag;
        _xmlNode *first;
    };
    class Keys;

    void planElement(_xmlNode *target, const _xmlNode *update);
    void planAttributes(_xmlNode *target, const _xmlNode *update);
    void planText(_xmlNode *target, const _xmlNode *update);
    void planChildren(_xmlNode *target, const _xmlNode *update);
    _xmlNode *match(Keys &keys, _xmlNode *target, const _xmlNode *child);
    _xmlNode *planList(_xmlNode *target, std::string_view tag);
    _xmlNode *planListOnce(HeapVector<List> &lists, _xmlNode *target, std::string_view tag);
    void planNew(_xmlNode *parent, const _xmlNode *child, _xmlNode *before);

    HeapVector<NewAttribute> attributes_;
    HeapVector<NewText> texts_;
    HeapVector<NewChild> children_;
    HeapVector<_xmlNode *> removed_;
};

} // namespace zuv::xmlutils

#endif
