// The options of the distributed logger.
#include <string>

#include "QosTree.h"
#include "platform/ddsxml/DistLogger.h"

namespace
{

std::string heard;

void hear(const char *message, const char *methodName, int line)
{
    heard = std::string(methodName) + " " + std::to_string(line) + ": " + message;
}

class DistLogger : public zuv_test::QosTree
{
protected:
    void SetUp() override
    {
        QosTree::SetUp();
        heard.clear();
        class_ = ZUV_DL_XMLConfig_createXMLExtensionClass(hear);
        ASSERT_EQ(DDS_XMLParser_register_extension_class(parser_, class_), 1);
    }
    void TearDown() override
    {
        DDS_XMLParser_unregister_extension_class(parser_, class_);
        ZUV_DL_XMLConfig_destroyXMLExtensionClass(class_);
        QosTree::TearDown();
    }
    static std::string logger(const std::string &options)
    {
        return library("l", "<distributed_logger>" + options + "</distributed_logger>");
    }
    const ZUV_DL_Options *options() const
    {
        return ZUV_DL_XMLConfig_getDLOptions(
            ZUVXMLObject_getFirstChildWithTag(element("l"), "distributed_logger"));
    }

private:
    ZUVXMLExtensionClass *class_ = nullptr;
};

TEST_F(DistLogger, hasTheDefaultsWhereItSaysNothing)
{
    ASSERT_TRUE(add(logger("")));
    ZUV_DL_Options *const defaults = ZUV_DL_Options_createDefault();
    ASSERT_NE(defaults, nullptr);
    for (const ZUV_DL_Options *one : {options(), static_cast<const ZUV_DL_Options *>(defaults)}) {
        EXPECT_TRUE(one->enabled);
        EXPECT_EQ(one->level, ZUV_DL_WARNING_LEVEL);
        EXPECT_EQ(one->queueSize, 128);
        EXPECT_TRUE(one->localOutput);
    }
    ZUV_DL_Options_delete(defaults);
    ZUV_DL_Options_delete(nullptr);
}

TEST_F(DistLogger, hasWhatItsElementSays)
{
    ASSERT_TRUE(add(logger("<enabled>false</enabled><level>FATAL</level><queue_size>7</queue_size>"
                           "<local_output>false</local_output>")));
    ZUV_DL_Options copy = {};
    EXPECT_EQ(ZUV_DL_Options_copy(&copy, options()), 1);
    EXPECT_FALSE(copy.enabled);
    EXPECT_EQ(copy.level, ZUV_DL_FATAL_LEVEL);
    EXPECT_EQ(copy.queueSize, 7);
    EXPECT_FALSE(copy.localOutput);
}

TEST_F(DistLogger, tellsItsClassWhatIsWrong)
{
    EXPECT_EQ(refusal(logger("<queue_size>0</queue_size>")),
              "!read text, line 1: distributed_logger queue_size: '0' is too small");
    EXPECT_EQ(heard, "parse 1: queue_size: '0' is too small");
    EXPECT_NE(refusal(logger("<level>DEBUG</level>")), "");
    EXPECT_NE(refusal(logger("<verbosity/>")), "");
    EXPECT_EQ(root_, nullptr);
}

TEST_F(DistLogger, isNoneInAnotherElement)
{
    ASSERT_TRUE(add(library("l", "")));
    EXPECT_EQ(ZUV_DL_XMLConfig_getDLOptions(element("l")), nullptr);
    zuv_test::LogCapture log;
    EXPECT_EQ(ZUV_DL_XMLConfig_getDLOptions(nullptr), nullptr);
    EXPECT_EQ(ZUV_DL_Options_copy(nullptr, nullptr), 0);
    EXPECT_EQ(log.lines().size(), 2U);
}

TEST_F(DistLogger, isReportedWhenThereIsNoMemory)
{
    zuv_test::LogCapture log;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(ZUV_DL_Options_createDefault(), nullptr);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(log.lines().size(), 1U);
}

} // namespace
