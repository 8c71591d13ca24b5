#include "common/ServiceCommon.h"

#include "platform/typesys/TypeTable.hpp"

/* -- Texts ------------------------------------------------------------------------------------------- */

ZUV_TYPE_ALIAS(ZUV_Service_BoundedString, "ZUV::Service::BoundedString",
               zuv::kText<ZUV_SERVICE_BOUNDED_STRING_MAX_LENGTH>);
ZUV_TYPE_ALIAS(ZUV_Service_FilePath, "ZUV::Service::FilePath",
               zuv::kText<ZUV_SERVICE_FILE_PATH_MAX_LENGTH>);
ZUV_TYPE_ALIAS(ZUV_Service_ResourceId, "ZUV::Service::ResourceId",
               zuv::kText<ZUV_SERVICE_RESOURCE_ID_MAX_LENGTH>);
ZUV_TYPE_ALIAS(ZUV_Service_XmlString, "ZUV::Service::XmlString", DDS_g_tc_string);

ZUV_TYPE_DEFINE_ALIAS(ZUV_Service_BoundedString)
ZUV_TYPE_DEFINE_ALIAS(ZUV_Service_FilePath)
ZUV_TYPE_DEFINE_ALIAS(ZUV_Service_ResourceId)
ZUV_TYPE_DEFINE_ALIAS(ZUV_Service_XmlString)

/* -- State of an entity ------------------------------------------------------------------------------ */

static constexpr DDS_TypeCodeMember kEntityStateKinds[] = {
    ZUV_TYPE_ENUMERATOR(ZUV_Service_EntityStateKind, INVALID),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_EntityStateKind, ENABLED),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_EntityStateKind, DISABLED),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_EntityStateKind, STARTED),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_EntityStateKind, STOPPED),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_EntityStateKind, RUNNING),
    ZUV_TYPE_ENUMERATOR(ZUV_Service_EntityStateKind, PAUSED),
};

ZUV_TYPE_ENUM(ZUV_Service_EntityStateKind, "ZUV::Service::EntityStateKind",
              DDS_EXTENSIBLE_EXTENSIBILITY, ZUV_Service_EntityStateKind_INVALID, kEntityStateKinds);

static constexpr DDS_TypeCodeMember kEntityStateMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_EntityState, state, ZUV_Service_EntityStateKind_g_typecode,
                    zuv::kRequired),
};
static_assert(kEntityStateMembers[0].id == 0x0E9ED39E);

ZUV_TYPE_STRUCT(ZUV_Service_EntityState, "ZUV::Service::EntityState", DDS_EXTENSIBLE_EXTENSIBILITY,
                zuv::kIsTopic, kEntityStateMembers);

ZUV_TYPE_DEFINE_ENUM(ZUV_Service_EntityStateKind)
ZUV_TYPE_DEFINE_TOPIC(ZUV_Service_EntityState)

/* -- Key of a built-in topic -------------------------------------------------------------------------- */

static constexpr DDS_TypeCodeMember kBuiltinTopicKeyMembers[] = {
    ZUV_TYPE_MEMBER(ZUV_Service_BuiltinTopicKey, value,
                    (zuv::kArray<DDS_g_tc_ulong, ZUV_SERVICE_BUILTIN_TOPIC_KEY_LENGTH>),
                    zuv::kRequired),
};
static_assert(kBuiltinTopicKeyMembers[0].id == 0x00C16320);

ZUV_TYPE_STRUCT(ZUV_Service_BuiltinTopicKey, "ZUV::Service::BuiltinTopicKey",
                DDS_FINAL_EXTENSIBILITY, zuv::kIsNested, kBuiltinTopicKeyMembers);

ZUV_TYPE_DEFINE_NESTED(ZUV_Service_BuiltinTopicKey)
