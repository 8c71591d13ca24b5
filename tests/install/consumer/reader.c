/* Hands the properties of an XML element to a list, the way a configuration does, and prints it. */
#include <stdio.h>

#include "config/ProductInfo.h"
#include "config/Version.h"
#include "platform/xmlutils/Globals.h"
#include "platform/xmlutils/Parser.h"
#include "sdkLib/Properties.h"

static int addProperties(ZUV_BrelServiceProperties *properties, const ZUVXMLUTILSObject *root)
{
    const ZUVXMLUTILSObject *element = ZUVXMLUTILSObject_getFirstChild(root);
    for (; element != NULL; element = ZUVXMLUTILSObject_getNextSibling(element)) {
        if (!ZUV_BrelServiceProperties_add(properties, ZUVXMLUTILSObject_getName(element),
                                           ZUVXMLUTILSObject_getText(element))) {
            return 0;
        }
    }
    return 1;
}

static int readProperties(ZUV_BrelServiceProperties *properties)
{
    ZUVXMLUTILSObject *root = ZUVXMLUTILSParser_parseString(
        "<properties><p name='colour'>red</p><p name='Colour'>blue</p></properties>");
    const int isRead = root != NULL && addProperties(properties, root);
    ZUVXMLUTILSParser_freeDom(root);
    return isRead;
}

int main(void)
{
    const ZUV_BrelServiceVersion built = {BREL_VERSION_MAJOR, BREL_VERSION_MINOR,
                                          BREL_VERSION_RELEASE, 99};
    const ZUV_BrelServiceVersion older = {6, 9, 9, 0};
    ZUV_BrelServiceProperties properties;
    if (!ZUVXMLUTILSGlobals_initialize() || !ZUV_BrelServiceProperties_initialize(&properties) ||
        !readProperties(&properties)) {
        return 1;
    }
    printf("%s %s: %d properties, colour=%s, Colour=%s, versions %d\n",
           BRELProductInfo_get()->productName, BRELProductInfo_getVersion(), properties.count,
           (const char *)ZUV_BrelServiceProperties_lookup_property(&properties, "colour"),
           (const char *)ZUV_BrelServiceProperties_lookup_property(&properties, "Colour"),
           ZUV_BrelServiceVersion_compare(&older, &built));
    ZUV_BrelServiceProperties_finalize(&properties);
    ZUVXMLUTILSGlobals_finalize();
    return 0;
}
