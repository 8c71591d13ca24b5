// Threads that share a parser take turns by its lock.
#include <thread>
#include <vector>

#include "config/xml/ConfigTest.h"

namespace zuv_test
{
namespace
{

constexpr int kRounds = 50;
constexpr int kRoutes = 40;

std::string documentOfRoutes()
{
    std::string text = "<dds><brel_service name='S'><domain_route name='dr'><session name='s'>";
    for (int index = 0; index < kRoutes; ++index) {
        text += "<topic_route name='r" + std::to_string(index) + "'/>";
    }
    return text + "</session></domain_route></brel_service></dds>";
}

class Turn
{
public:
    explicit Turn(const Parser &parser) : parser_(parser.get())
    {
        EXPECT_EQ(BRELCfgFileParser_lockXmlDom(parser_, &isLocked_), 1);
    }
    ~Turn() { EXPECT_EQ(BRELCfgFileParser_unlockXmlDom(parser_, &isLocked_), 1); }
    Turn(const Turn &) = delete;
    Turn &operator=(const Turn &) = delete;

private:
    BRELCfgFileParser *parser_;
    int isLocked_ = 0;
};

using XmlThreads = ConfigTest;

TEST_F(XmlThreads, takeTurnsWithOneTree)
{
    makeParser(checked);
    ASSERT_EQ(load(parser, documentOfRoutes()), 1);
    ASSERT_NE(BRELCfgFileParser_loadService(parser.get(), "S"), nullptr);
    const auto updater = [this] {
        for (int round = 0; round < kRounds; ++round) {
            const Turn turn(parser);
            const std::string name = "S::dr::s::r" + std::to_string(round % kRoutes);
            ZUVXMLUTILSObject *const update = BRELCfgFileParser_parseUpdate(
                parser.get(), at(parser, name.c_str()),
                round % 2 ? "<topic_route><route_types>true</route_types></topic_route>"
                          : "<topic_route><route_types>false</route_types></topic_route>");
            ASSERT_NE(update, nullptr);
            int updated = 0;
            EXPECT_EQ(BRELCfgFileElement_update(
                          &updated, recordAt(parser, name.c_str()),
                          static_cast<BRELCfgFileElement *>(ZUVXMLUTILSObject_getUserData(update))),
                      1);
            BRELCfgFileParser_deleteEntity(parser.get(), update);
        }
    };
    const auto builder = [this] {
        for (int round = 0; round < kRounds; ++round) {
            const Turn turn(parser);
            ZUVXMLUTILSObject *const added = BRELCfgFileParser_loadEntity(
                parser.get(), at(parser, "S::dr::s"), "<topic_route name='new'/>");
            ASSERT_NE(added, nullptr);
            BRELCfgFileParser_deleteEntity(parser.get(), added);
        }
    };
    const auto reader = [this] {
        for (int round = 0; round < kRounds; ++round) {
            const Turn turn(parser);
            EXPECT_NE(saved(parser).find("r39"), std::string::npos);
            ZUV_BrelServiceEntityKind kind;
            EXPECT_NE(BRELCfgFileParser_findEntity(at(parser, "S"), &kind, "dr::s::r7"), nullptr);
        }
    };
    std::vector<std::thread> threads;
    threads.emplace_back(updater);
    threads.emplace_back(builder);
    threads.emplace_back(reader);
    threads.emplace_back(updater);
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(childrenOf(at(parser, "S::dr::s")).size(), std::size_t{kRoutes});
    EXPECT_TRUE(log.isEmpty());
}

} // namespace
} // namespace zuv_test
