// The names that the kind of each type promises, against the symbol tables of the built libraries.
#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "AllTypes.h"

namespace
{

using Names = std::set<std::string>;
using Endings = std::vector<std::string_view>;

const Endings kDescription = {"_get_typecode", "_get_sample_access_info", "_get_type_plugin_info"};

const Endings kSample = {"_initialize",
                         "_initialize_ex",
                         "_initialize_w_params",
                         "_finalize",
                         "_finalize_w_return",
                         "_finalize_ex",
                         "_finalize_w_params",
                         "_finalize_optional_members",
                         "_copy"};

const Endings kSequence = {"_initialize",
                           "_finalize",
                           "_get_maximum",
                           "_set_maximum",
                           "_set_absolute_maximum",
                           "_get_length",
                           "_set_length",
                           "_ensure_length",
                           "_get",
                           "_get_reference",
                           "_copy",
                           "_copy_no_alloc",
                           "_copy_no_allocI",
                           "_from_array",
                           "_to_array",
                           "_loan_contiguous",
                           "_loan_discontiguous",
                           "_unloan",
                           "_get_contiguous_buffer",
                           "_get_contiguous_bufferI",
                           "_get_discontiguous_buffer",
                           "_get_discontiguous_bufferI",
                           "_has_ownership",
                           "_get_read_tokenI",
                           "_set_read_tokenI",
                           "_check_invariantsI",
                           "_delete_bufferI",
                           "_get_element_pointers_allocation",
                           "_set_element_pointers_allocation",
                           "_get_element_allocation_params",
                           "_set_element_allocation_params",
                           "_get_element_deallocation_params",
                           "_set_element_deallocation_params"};

const Endings kPrint = {"_print_data"};

const Endings kSupport = {
    "_create_data",  "_create_dataI",  "_create_data_ex",  "_create_data_w_params",
    "_destroy_data", "_destroy_dataI", "_destroy_data_ex", "_destroy_data_w_params",
    "_copy_data",    "_print_data"};

const Endings kKeySupport = {"_create_key",  "_create_keyI",  "_create_key_ex",
                             "_destroy_key", "_destroy_keyI", "_destroy_key_ex"};

const Endings kMaxSize = {"_get_serialized_sample_max_size"};

const Endings kQueries = {"_copy_sample", "_get_serialized_sample_max_size",
                          "_get_serialized_key_max_size",
                          "_get_serialized_key_max_size_for_keyhash", "_get_key_kind"};

const Endings kSerialization = {"_serialize_to_cdr_buffer",
                                "_serialize_to_cdr_buffer_ex",
                                "_deserialize_from_cdr_buffer",
                                "_data_to_string",
                                "_deserialize_key",
                                "_get_programs"};

const Endings kPlugin = {"_on_participant_attached",
                         "_on_participant_detached",
                         "_on_endpoint_attached",
                         "_on_endpoint_detached",
                         "_finalize_optional_members",
                         "_return_sample",
                         "_new",
                         "_delete"};

const Endings kKeyPlugin = {"_serialized_sample_to_keyhash", "_instance_to_key",
                            "_key_to_instance"};

const Endings kTypeSupport = {"_register_type",
                              "_unregister_type",
                              "_finalize",
                              "_get_typecode",
                              "_get_type_name",
                              "_create_data",
                              "_create_data_ex",
                              "_create_data_w_params",
                              "_delete_data",
                              "_delete_data_ex",
                              "_delete_data_w_params",
                              "_initialize_data",
                              "_initialize_data_ex",
                              "_initialize_data_w_params",
                              "_finalize_data",
                              "_finalize_data_ex",
                              "_finalize_data_w_params",
                              "_copy_data",
                              "_print_data",
                              "_serialize_data_to_cdr_buffer",
                              "_serialize_data_to_cdr_buffer_ex",
                              "_deserialize_data_from_cdr_buffer",
                              "_data_to_string"};

const Endings kDataWriter = {"_narrow",
                             "_as_datawriter",
                             "_create_data",
                             "_create_data_w_params",
                             "_delete_data",
                             "_delete_data_w_params",
                             "_get_loan",
                             "_discard_loan",
                             "_register_instance",
                             "_register_instance_w_timestamp",
                             "_register_instance_w_params",
                             "_unregister_instance",
                             "_unregister_instance_w_timestamp",
                             "_unregister_instance_w_params",
                             "_write",
                             "_write_w_timestamp",
                             "_write_w_params",
                             "_dispose",
                             "_dispose_w_timestamp",
                             "_dispose_w_params",
                             "_get_key_value",
                             "_lookup_instance"};

const Endings kDataReader = {"_narrow",
                             "_as_datareader",
                             "_read",
                             "_take",
                             "_read_w_condition",
                             "_take_w_condition",
                             "_read_next_sample",
                             "_take_next_sample",
                             "_read_instance",
                             "_take_instance",
                             "_read_instance_w_condition",
                             "_take_instance_w_condition",
                             "_read_next_instance",
                             "_take_next_instance",
                             "_read_next_instance_w_condition",
                             "_take_next_instance_w_condition",
                             "_return_loan",
                             "_get_key_value",
                             "_lookup_instance",
                             "_add_sample_to_remote_writer_queue",
                             "_add_unregister_to_remote_writer_queue",
                             "_add_dispose_to_remote_writer_queue",
                             "_is_data_consistent",
                             "_read_or_takeI",
                             "_read_or_take_w_conditionI",
                             "_read_or_take_next_sample_I",
                             "_read_or_take_instanceI",
                             "_read_or_take_instance_w_conditionI",
                             "_read_or_take_next_instanceI",
                             "_read_or_take_next_instance_w_conditionI"};

const Endings kRequester = {"_create",
                            "_create_w_params",
                            "_send_request_w_params",
                            "_send_request",
                            "_take_reply_for_related_request",
                            "_take_reply",
                            "_take_replies_for_related_request",
                            "_take_replies",
                            "_read_reply_for_related_request",
                            "_read_reply",
                            "_read_replies_for_related_request",
                            "_read_replies",
                            "_receive_reply",
                            "_receive_replies",
                            "_get_request_datawriter",
                            "_get_reply_datareader",
                            "_return_loan",
                            "_loan_or_copy_samplesI"};

const Endings kReplier = {
    "_create",        "_create_w_params",      "_take_request",           "_read_request",
    "_take_requests", "_read_requests",        "_receive_request",        "_receive_requests",
    "_send_reply",    "_get_reply_datawriter", "_get_request_datareader", "_return_loan"};

const Endings kUntyped = {"RequesterUntypedImpl_create",
                          "RequesterUntypedImpl_get_reply_loaned",
                          "Requester_delete",
                          "Requester_wait_for_replies",
                          "Requester_wait_for_replies_for_related_request",
                          "ReplierUntypedImpl_create",
                          "ReplierUntypedImpl_initialize",
                          "ReplierUntypedImpl_send_sample",
                          "ReplierParams_toEntityParams",
                          "Replier_on_data_available",
                          "Replier_wait_for_requests",
                          "Replier_delete",
                          "EntityUntypedImpl_send_sample",
                          "EntityUntypedImpl_get_sample_loaned",
                          "EntityUntypedImpl_return_loan",
                          "EntityUntypedImpl_get_datawriter",
                          "EntityUntypedImpl_get_datareader",
                          "EntityUntypedImpl_validate_receive_params"};

class Promises
{
public:
    Promises &all(const std::string &begin, std::initializer_list<const Endings *> lists)
    {
        for (const Endings *endings : lists) {
            for (const std::string_view ending : *endings) {
                names_.insert(begin + std::string(ending));
            }
        }
        return *this;
    }

    void enumeration(const std::string &type)
    {
        all(type, {&kDescription, &kSample}).all(type + "Seq", {&kSequence});
        all(type + "PluginSupport", {&kPrint}).all(type + "Plugin", {&kMaxSize});
    }
    void alias(const std::string &type)
    {
        all(type, {&kDescription, &kSample}).all(type + "Seq", {&kSequence});
        all(type + "PluginSupport", {&kSupport}).all(type + "Plugin", {&kQueries});
    }
    void nested(const std::string &type)
    {
        alias(type);
        all(type + "Plugin", {&kSerialization});
    }
    void topic(const std::string &type)
    {
        nested(type);
        all(type + "Plugin", {&kPlugin}).all(type + "TypeSupport", {&kTypeSupport});
        all(type + "DataWriter", {&kDataWriter}).all(type + "DataReader", {&kDataReader});
    }
    void keyedTopic(const std::string &type)
    {
        topic(type);
        all(type + "PluginSupport", {&kKeySupport}).all(type + "Plugin", {&kKeyPlugin});
    }

    const Names &names() const { return names_; }

private:
    Names names_;
};

Names promised()
{
    Promises promises;
#define ZUV_TEST_PROMISE_KEYED(T) promises.keyedTopic(#T);
#define ZUV_TEST_PROMISE_TOPIC(T) promises.topic(#T);
#define ZUV_TEST_PROMISE_NESTED(T) promises.nested(#T);
#define ZUV_TEST_PROMISE_ALIAS(T) promises.alias(#T);
#define ZUV_TEST_PROMISE_ENUMERATION(T) promises.enumeration(#T);
    ZUV_TEST_KEYED_TOPIC_TYPES(ZUV_TEST_PROMISE_KEYED)
    ZUV_TEST_UNKEYED_TOPIC_TYPES(ZUV_TEST_PROMISE_TOPIC)
    ZUV_TEST_NESTED_TYPES(ZUV_TEST_PROMISE_NESTED)
    ZUV_TEST_ALIASES(ZUV_TEST_PROMISE_ALIAS)
    ZUV_TEST_ENUMERATIONS(ZUV_TEST_PROMISE_ENUMERATION)
    promises.all("ZUV_BrelServiceAdminRequester", {&kRequester});
    promises.all("ZUV_BrelServiceAdminReplier", {&kReplier});
    promises.all("ZUV_Talvane_", {&kUntyped});
    return promises.names();
}

// The global functions that the libraries define. Only these: mangled names of C++ are none.
Names exported()
{
    const std::string command = NM " --defined-only --extern-only --format=posix " LIBRARIES;
    const std::unique_ptr<FILE, int (*)(FILE *)> pipe(popen(command.c_str(), "r"), pclose);
    Names names;
    std::array<char, 1024> line;
    while (pipe != nullptr && std::fgets(line.data(), line.size(), pipe.get()) != nullptr) {
        const std::string_view text(line.data());
        const std::size_t end = text.find(' ');
        if (end != std::string_view::npos && text.substr(end, 3) == " T ") {
            names.emplace(text.substr(0, end));
        }
    }
    return names;
}

TEST(ExportedNames, AreAllThatTheKindsOfTheTypesPromise)
{
    const Names expected = promised();
    const Names present = exported();
    Names missing;
    std::set_difference(expected.begin(), expected.end(), present.begin(), present.end(),
                        std::inserter(missing, missing.end()));
    std::printf("%zu names promised, %zu of them exported\n", expected.size(),
                expected.size() - missing.size());
    EXPECT_GT(expected.size(), 2000U);
    for (const std::string &name : missing) {
        ADD_FAILURE() << "missing: " << name;
    }
}

// What the kind of a type does not have is not there either: no enumeration is created on the heap, and only
// types of topics have endpoints.
TEST(ExportedNames, AreNoneThatAKindDoesNotHave)
{
    const Names present = exported();
    const auto expectNone = [&](const std::string &begin, const Endings &endings) {
        for (const std::string_view ending : endings) {
            EXPECT_EQ(present.count(begin + std::string(ending)), 0U) << begin << ending;
        }
    };
#define ZUV_TEST_NO_SUPPORT(T) expectNone(#T "PluginSupport", {"_create_data", "_copy_data"});
#define ZUV_TEST_NO_KEY(T) expectNone(#T "PluginSupport", kKeySupport);
#define ZUV_TEST_NO_ENDPOINT(T) expectNone(#T "TypeSupport", kTypeSupport);
    ZUV_TEST_ENUMERATIONS(ZUV_TEST_NO_SUPPORT)
    ZUV_TEST_UNKEYED_TOPIC_TYPES(ZUV_TEST_NO_KEY)
    ZUV_TEST_NESTED_TYPES(ZUV_TEST_NO_KEY)
    ZUV_TEST_NESTED_TYPES(ZUV_TEST_NO_ENDPOINT)
    ZUV_TEST_ALIASES(ZUV_TEST_NO_ENDPOINT)
    ZUV_TEST_ENUMERATIONS(ZUV_TEST_NO_ENDPOINT)
}

} // namespace
