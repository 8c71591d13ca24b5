/* Topic types of the tests of entities and of request/reply. */
#ifndef ZUV_TESTS_PLATFORM_DDS_TEST_TYPES_H
#define ZUV_TESTS_PLATFORM_DDS_TEST_TYPES_H

#include "platform/dds/TypedEndpoints.h"
#include "platform/typesys/PrimitiveSequences.h"
#include "platform/typesys/TypeFamily.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Keyed, like a request. */
typedef struct Test_Question {
    DDS_Long id;     /* the key */
    char *addressee; /* optional, at most 255 characters */
    char *text;
    DDS_OctetSeq octets;
} Test_Question;

/* Not keyed, like a reply. */
typedef struct Test_Answer {
    DDS_Long number;
    char *text;
} Test_Answer;

/* With a key that is longer than its hash. */
typedef struct Test_Named {
    char *name; /* the key, at most 64 characters */
    DDS_Long number;
} Test_Named;

ZUV_TYPE_DECLARE_TOPIC_KEYED(Test_Question)
ZUV_TYPE_DECLARE_TOPIC(Test_Answer)
ZUV_TYPE_DECLARE_TOPIC_KEYED(Test_Named)
DDS_TYPED_ENDPOINTS_DECLARE(Test_Question, Test_QuestionSeq)
DDS_TYPED_ENDPOINTS_DECLARE(Test_Answer, Test_AnswerSeq)
DDS_TYPED_ENDPOINTS_DECLARE(Test_Named, Test_NamedSeq)

#ifdef __cplusplus
}
#endif

#endif
