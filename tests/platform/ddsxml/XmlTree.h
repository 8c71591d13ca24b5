// A parser of the middleware's XML and the tree that it fills, for each test.
#ifndef ZUV_TESTS_PLATFORM_DDSXML_XML_TREE_H
#define ZUV_TESTS_PLATFORM_DDSXML_XML_TREE_H

#include <memory>

#include <gtest/gtest.h>

#include "platform/ddsxml/XmlParser.h"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/Globals.h"
#include "support/HeapCheck.h"

namespace zuv_test
{

class XmlTree : public testing::Test
{
protected:
    void SetUp() override
    {
        heap_ = std::make_unique<HeapCheck>();
        ASSERT_EQ(ZUVXMLUTILSGlobals_initialize(), 1);
        parser_ = DDS_XMLParser_new();
    }
    void TearDown() override
    {
        ZUVOsapiFault_disarm();
        DDS_XMLParser_free_dom(parser_, root_);
        DDS_XMLParser_delete(parser_);
        ZUVXMLUTILSGlobals_finalize();
        EXPECT_TRUE(heap_->isBalanced());
    }

    DDS_XMLParser *parser_ = nullptr;
    ZUVXMLObject *root_ = nullptr;

private:
    std::unique_ptr<HeapCheck> heap_;
};

} // namespace zuv_test

#endif
