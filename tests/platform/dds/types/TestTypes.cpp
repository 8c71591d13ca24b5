#include "types/TestTypes.h"

#include "platform/typesys/TypeTable.hpp"

static constexpr DDS_TypeCodeMember kQuestionMembers[] = {
    ZUV_TYPE_MEMBER(Test_Question, id, DDS_g_tc_long, zuv::kKey),
    ZUV_TYPE_MEMBER(Test_Question, addressee, zuv::kText<255>, zuv::kOptional),
    ZUV_TYPE_MEMBER(Test_Question, text, DDS_g_tc_string, zuv::kRequired),
    ZUV_TYPE_MEMBER(Test_Question, octets, zuv::kSequence<DDS_g_tc_octet>, zuv::kRequired),
};
static constexpr DDS_TypeCodeMember kAnswerMembers[] = {
    ZUV_TYPE_MEMBER(Test_Answer, number, DDS_g_tc_long, zuv::kRequired),
    ZUV_TYPE_MEMBER(Test_Answer, text, DDS_g_tc_string, zuv::kRequired),
};
static constexpr DDS_TypeCodeMember kNamedMembers[] = {
    ZUV_TYPE_MEMBER(Test_Named, name, zuv::kText<64>, zuv::kKey),
    ZUV_TYPE_MEMBER(Test_Named, number, DDS_g_tc_long, zuv::kRequired),
};

ZUV_TYPE_STRUCT(Test_Question, "Test::Question", DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsTopic,
                kQuestionMembers);
ZUV_TYPE_STRUCT(Test_Answer, "Test::Answer", DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsTopic,
                kAnswerMembers);
ZUV_TYPE_STRUCT(Test_Named, "Test::Named", DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsTopic,
                kNamedMembers);

ZUV_TYPE_DEFINE_TOPIC_KEYED(Test_Question)
ZUV_TYPE_DEFINE_TOPIC(Test_Answer)
ZUV_TYPE_DEFINE_TOPIC_KEYED(Test_Named)

DDS_TYPED_ENDPOINTS_DEFINE(Test_Question, Test_QuestionSeq)
DDS_TYPED_ENDPOINTS_DEFINE(Test_Answer, Test_AnswerSeq)
DDS_TYPED_ENDPOINTS_DEFINE(Test_Named, Test_NamedSeq)
