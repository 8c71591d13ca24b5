// The typed operations of a topic's type under names that do not tell the type, so that a test says once what holds for
// a type with a key and for one without.
#ifndef ZUV_TESTS_PLATFORM_DDS_TYPED_OPERATIONS_H
#define ZUV_TESTS_PLATFORM_DDS_TYPED_OPERATIONS_H

#include <gtest/gtest.h>

#include "Domain.h"

namespace zuv_test
{

#define ZUV_TEST_TYPED_OPERATIONS(T)                                                               \
    struct T##Operations {                                                                         \
        using Sample = T;                                                                          \
        using Sequence = T##Seq;                                                                   \
        using Writer = T##DataWriter;                                                              \
        using Reader = T##DataReader;                                                              \
        static constexpr auto getReference = T##Seq_get_reference;                                 \
        static constexpr auto getLength = T##Seq_get_length;                                       \
        static constexpr auto setAbsoluteMaximum = T##Seq_set_absolute_maximum;                    \
                                                                                                   \
        static constexpr auto registerType = T##TypeSupport_register_type;                         \
        static constexpr auto name = T##TypeSupport_get_type_name;                                 \
        static constexpr auto finalize = T##TypeSupport_finalize;                                  \
        static constexpr auto getTypeCode = T##TypeSupport_get_typecode;                           \
        static constexpr auto createDataEx = T##TypeSupport_create_data_ex;                        \
        static constexpr auto createDataWithParams = T##TypeSupport_create_data_w_params;          \
        static constexpr auto deleteData = T##TypeSupport_delete_data;                             \
        static constexpr auto deleteDataWithParams = T##TypeSupport_delete_data_w_params;          \
        static constexpr auto initializeDataEx = T##TypeSupport_initialize_data_ex;                \
        static constexpr auto initializeDataWithParams = T##TypeSupport_initialize_data_w_params;  \
        static constexpr auto finalizeDataEx = T##TypeSupport_finalize_data_ex;                    \
        static constexpr auto finalizeDataWithParams = T##TypeSupport_finalize_data_w_params;      \
        static constexpr auto printData = T##TypeSupport_print_data;                               \
        static constexpr auto serialize = T##TypeSupport_serialize_data_to_cdr_buffer;             \
        static constexpr auto deserialize = T##TypeSupport_deserialize_data_from_cdr_buffer;       \
        static constexpr auto dataToString = T##TypeSupport_data_to_string;                        \
                                                                                                   \
        static constexpr auto narrowWriter = T##DataWriter_narrow;                                 \
        static constexpr auto writerCreateData = T##DataWriter_create_data;                        \
        static constexpr auto writerCreateDataWithParams = T##DataWriter_create_data_w_params;     \
        static constexpr auto writerDeleteData = T##DataWriter_delete_data;                        \
        static constexpr auto writerDeleteDataWithParams = T##DataWriter_delete_data_w_params;     \
        static constexpr auto writeAt = T##DataWriter_write_w_timestamp;                           \
        static constexpr auto registerAt = T##DataWriter_register_instance_w_timestamp;            \
        static constexpr auto registerWithParams = T##DataWriter_register_instance_w_params;       \
        static constexpr auto unregisterAt = T##DataWriter_unregister_instance_w_timestamp;        \
        static constexpr auto unregisterWithParams = T##DataWriter_unregister_instance_w_params;   \
        static constexpr auto disposeAt = T##DataWriter_dispose_w_timestamp;                       \
        static constexpr auto disposeWithParams = T##DataWriter_dispose_w_params;                  \
        static constexpr auto writerLookup = T##DataWriter_lookup_instance;                        \
                                                                                                   \
        static constexpr auto narrowReader = T##DataReader_narrow;                                 \
        static constexpr auto read = T##DataReader_read;                                           \
        static constexpr auto take = T##DataReader_take;                                           \
        static constexpr auto takeNextSample = T##DataReader_take_next_sample;                     \
        static constexpr auto readWhere = T##DataReader_read_w_condition;                          \
        static constexpr auto takeWhere = T##DataReader_take_w_condition;                          \
        static constexpr auto readInstance = T##DataReader_read_instance;                          \
        static constexpr auto takeInstance = T##DataReader_take_instance;                          \
        static constexpr auto readInstanceWhere = T##DataReader_read_instance_w_condition;         \
        static constexpr auto takeInstanceWhere = T##DataReader_take_instance_w_condition;         \
        static constexpr auto readNextInstance = T##DataReader_read_next_instance;                 \
        static constexpr auto takeNextInstance = T##DataReader_take_next_instance;                 \
        static constexpr auto readNextInstanceWhere =                                              \
            T##DataReader_read_next_instance_w_condition;                                          \
        static constexpr auto takeNextInstanceWhere =                                              \
            T##DataReader_take_next_instance_w_condition;                                          \
        static constexpr auto returnLoan = T##DataReader_return_loan;                              \
        static constexpr auto readerLookup = T##DataReader_lookup_instance;                        \
        static constexpr auto queueSample = T##DataReader_add_sample_to_remote_writer_queue;       \
        static constexpr auto queueUnregister =                                                    \
            T##DataReader_add_unregister_to_remote_writer_queue;                                   \
        static constexpr auto queueDispose = T##DataReader_add_dispose_to_remote_writer_queue;     \
        static constexpr auto isConsistent = T##DataReader_is_data_consistent;                     \
    };

ZUV_TEST_TYPED_OPERATIONS(Test_Question)
ZUV_TEST_TYPED_OPERATIONS(Test_Answer)

struct Keyed : Test_QuestionOperations {
    using Held = Question;
    static constexpr bool kHasKey = true;
    static DDS_Long numberOf(const Test_Question &sample) { return sample.id; }
};
struct Keyless : Test_AnswerOperations {
    using Held = Answer;
    static constexpr bool kHasKey = false;
    static DDS_Long numberOf(const Test_Answer &sample) { return sample.number; }
};

using KeyedAndKeyless = testing::Types<Keyed, Keyless>;

} // namespace zuv_test

#endif
