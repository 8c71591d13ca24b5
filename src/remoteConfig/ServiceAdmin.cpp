#include "remoteConfig/ServiceAdmin.h"

#include "platform/typesys/TypeTable.hpp"

/* -- Aliases ----------------------------------------------------------------------------------------- */

ZUV_TYPE_ALIAS(ZUV_Service_Admin_EntityName, "ZUV::Service::Admin::EntityName",
               ZUV_Service_BoundedString_g_typecode);
ZUV_TYPE_ALIAS(ZUV_Service_Admin_ResourceIdentifier, "ZUV::Service::Admin::ResourceIdentifier",
               ZUV_Service_ResourceId_g_typecode);
ZUV_TYPE_ALIAS(ZUV_Service_Admin_StringBody, "ZUV::Service::Admin::StringBody", DDS_g_tc_string);
ZUV_TYPE_ALIAS(ZUV_Service_Admin_OctetBody, "ZUV::Service::Admin::OctetBody",
               zuv::kSequence<DDS_g_tc_octet>);

ZUV_TYPE_DEFINE_ALIAS(ZUV_Service_Admin_EntityName)
ZUV_TYPE_DEFINE_ALIAS(ZUV_Service_Admin_ResourceIdentifier)
ZUV_TYPE_DEFINE_ALIAS(ZUV_Service_Admin_StringBody)
ZUV_TYPE_DEFINE_ALIAS(ZUV_Service_Admin_OctetBody)

/* -- Enumerations ------------------------------------------------------------------------------------ */

static constexpr DDS_TypeCodeMember kCommandActionKinds[] = {
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Admin_CommandActionKind, CREATE_ACTION),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Admin_CommandActionKind, GET_ACTION),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Admin_CommandActionKind, UPDATE_ACTION),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Admin_CommandActionKind, DELETE_ACTION),
};

ZUV_TYPE_ENUM(ZUV_Service_Admin_CommandActionKind, "ZUV::Service::Admin::CommandActionKind",
              DDS_EXTENSIBLE_EXTENSIBILITY, ZUV_Service_Admin_CommandActionKind_CREATE_ACTION,
              kCommandActionKinds);

static constexpr DDS_TypeCodeMember kCommandReplyRetcodes[] = {
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Admin_CommandReplyRetcode, OK_RETCODE),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_Admin_CommandReplyRetcode, ERROR_RETCODE),
};

ZUV_TYPE_ENUM(ZUV_Service_Admin_CommandReplyRetcode, "ZUV::Service::Admin::CommandReplyRetcode",
              DDS_EXTENSIBLE_EXTENSIBILITY, ZUV_Service_Admin_CommandReplyRetcode_OK_RETCODE,
              kCommandReplyRetcodes);

ZUV_TYPE_DEFINE_ENUM(ZUV_Service_Admin_CommandActionKind)
ZUV_TYPE_DEFINE_ENUM(ZUV_Service_Admin_CommandReplyRetcode)

/* -- Request ----------------------------------------------------------------------------------------- */

static constexpr DDS_TypeCodeMember kCommandRequestMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Admin_CommandRequest, instance_id, DDS_g_tc_long, zuv::kKey),
    ZUV_TYPE_MEMBER(ZUV_Service_Admin_CommandRequest, application_name,
                    zuv::kText<ZUV_SERVICE_BOUNDED_STRING_MAX_LENGTH>, zuv::kOptional),
    ZUV_TYPE_MEMBER(ZUV_Service_Admin_CommandRequest, action,
                    ZUV_Service_Admin_CommandActionKind_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Admin_CommandRequest, resource_identifier,
                    ZUV_Service_Admin_ResourceIdentifier_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Admin_CommandRequest, string_body,
                    ZUV_Service_Admin_StringBody_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Admin_CommandRequest, octet_body,
                    ZUV_Service_Admin_OctetBody_g_typecode, zuv::kRequired),
};
static_assert(kCommandRequestMembers[0].id == 0x0FCCAF51);
static_assert(kCommandRequestMembers[1].id == 0x01392C44);
static_assert(kCommandRequestMembers[2].id == 0x09558C41);
static_assert(kCommandRequestMembers[3].id == 0x091AB1BF);
static_assert(kCommandRequestMembers[4].id == 0x0910C882);
static_assert(kCommandRequestMembers[5].id == 0x0D4E69ED);

ZUV_TYPE_STRUCT(ZUV_Service_Admin_CommandRequest, "ZUV::Service::Admin::CommandRequest",
                DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsTopic, kCommandRequestMembers);

ZUV_TYPE_DEFINE_TOPIC_KEYED(ZUV_Service_Admin_CommandRequest)

/* -- Reply ------------------------------------------------------------------------------------------- */

static constexpr DDS_TypeCodeMember kCommandReplyMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_Admin_CommandReply, retcode,
                    ZUV_Service_Admin_CommandReplyRetcode_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Admin_CommandReply, native_retcode, DDS_g_tc_long, zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Admin_CommandReply, string_body,
                    ZUV_Service_Admin_StringBody_g_typecode, zuv::kRequired),
    ZUV_TYPE_MEMBER(ZUV_Service_Admin_CommandReply, octet_body,
                    ZUV_Service_Admin_OctetBody_g_typecode, zuv::kRequired),
};
static_assert(kCommandReplyMembers[0].id == 0x00708903);
static_assert(kCommandReplyMembers[1].id == 0x095D6585);
static_assert(kCommandReplyMembers[2].id == 0x0910C882);
static_assert(kCommandReplyMembers[3].id == 0x0D4E69ED);

ZUV_TYPE_STRUCT(ZUV_Service_Admin_CommandReply, "ZUV::Service::Admin::CommandReply",
                DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsTopic, kCommandReplyMembers);

ZUV_TYPE_DEFINE_TOPIC(ZUV_Service_Admin_CommandReply)

/* -- Vocabularies ------------------------------------------------------------------------------------ */

const char
    *const ZUV_SERVICE_WELL_KNOWN_RESOURCE_KIND_NAMES[ZUV_ServiceWellKnownResourceKind_COUNT] = {
        "", "config", "state", "message"};

const char *const ZUV_SERVICE_CUSTOM_METHOD_NAMES[ZUV_ServiceCustomMethodKind_COUNT] = {
    "", "announce", "save", "add_peer", "remove_peer"};

const char *const ZUV_SERVICE_ENTITY_STATE_NAMES[ZUV_SERVICE_ENTITY_STATE_COUNT] = {
    "INVALID", "ENABLED", "DISABLED", "STARTED", "STOPPED", "RUNNING", "PAUSED"};
