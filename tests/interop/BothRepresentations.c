#include "BothRepresentations.h"

#include <string.h>

#include <dds/ddsi/ddsi_cdrstream.h>
#include <dds/ddsi/ddsi_domaingv.h>
#include <dds/ddsi/ddsi_serdata_default.h>
#include <dds/ddsi/ddsi_sertype.h>
#include <dds/ddsrt/heap.h>
#include <dds/ddsrt/string.h>

enum { kXcdr2 = 2 };

/* Whatever an endpoint announces first, it writes XCDR 2. */
static struct ddsi_sertype *deriveXcdr2(const struct ddsi_sertype *base,
                                        dds_data_representation_id_t representation,
                                        dds_type_consistency_enforcement_qospolicy_t consistency)
{
    (void)representation;
    return ddsi_sertype_ops_default.derive_sertype(base, DDS_DATA_REPRESENTATION_XCDR2,
                                                   consistency);
}

static const struct ddsi_sertype_ops *operations(void)
{
    static struct ddsi_sertype_ops table;
    if (table.version == NULL) {
        table = ddsi_sertype_ops_default;
        table.derive_sertype = deriveXcdr2;
    }
    return &table;
}

static void copyDescription(const dds_topic_descriptor_t *from,
                            struct ddsi_sertype_default_desc *to)
{
    to->size = from->m_size;
    to->align = from->m_align;
    to->flagset = from->m_flagset;

    to->keys.nkeys = from->m_nkeys;
    to->keys.keys = ddsrt_malloc(from->m_nkeys * sizeof *to->keys.keys);
    for (uint32_t index = 0; index < from->m_nkeys; ++index) {
        to->keys.keys[index].ops_offs = from->m_keys[index].m_offset;
        to->keys.keys[index].idx = from->m_keys[index].m_idx;
    }

    to->ops.nops = dds_stream_countops(from->m_ops, from->m_nkeys, from->m_keys);
    to->ops.ops = ddsrt_memdup(from->m_ops, to->ops.nops * sizeof *to->ops.ops);

    to->typeinfo_ser.sz = from->type_information.sz;
    to->typeinfo_ser.data = ddsrt_memdup(from->type_information.data, from->type_information.sz);
    to->typemap_ser.sz = from->type_mapping.sz;
    to->typemap_ser.data = ddsrt_memdup(from->type_mapping.data, from->type_mapping.sz);
}

static struct ddsi_sertype_default *newType(const dds_topic_descriptor_t *descriptor)
{
    const bool isKeyless = descriptor->m_nkeys == 0;
    struct ddsi_sertype_default *type = ddsrt_calloc(1, sizeof *type);
    ddsi_sertype_init_flags(&type->c, descriptor->m_typename, operations(),
                            isKeyless ? &ddsi_serdata_ops_xcdr2_nokey : &ddsi_serdata_ops_xcdr2,
                            isKeyless ? DDSI_SERTYPE_FLAG_TOPICKIND_NO_KEY : 0);
    type->c.allowed_data_representation = DDS_DATA_REPRESENTATION_RESTRICT_DEFAULT;

    enum ddsi_sertype_extensibility extensibility;
    (void)dds_stream_extensibility(descriptor->m_ops, &extensibility);
    type->encoding_format = ddsi_sertype_extensibility_enc_format(extensibility);
    type->write_encoding_version = kXcdr2;
    copyDescription(descriptor, &type->type);
    return type;
}

dds_entity_t createTopicOfBothRepresentations(dds_entity_t participant,
                                              const dds_topic_descriptor_t *descriptor,
                                              const char *name)
{
    struct ddsi_sertype_default *type = newType(descriptor);
    struct ddsi_sertype *used = &type->c;
    const dds_entity_t topic = dds_create_topic_sertype(participant, name, &used, NULL, NULL, NULL);
    if (topic < 0) {
        ddsi_sertype_unref(&type->c);
        return topic;
    }
    /* The pool of sample buffers is the domain's, which is known only now. */
    const struct ddsi_domaingv *domain = ddsrt_atomic_ldvoidp(&used->gv);
    type->serpool = domain->serpool;
    return topic;
}

void announceBothRepresentations(dds_qos_t *qos)
{
    const dds_data_representation_id_t both[] = {DDS_DATA_REPRESENTATION_XCDR1,
                                                 DDS_DATA_REPRESENTATION_XCDR2};
    dds_qset_data_representation(qos, 2, both);
}

size_t serializeXcdr2(const dds_topic_descriptor_t *descriptor, const void *sample,
                      unsigned char **bytes)
{
    struct ddsi_sertype_default *type = newType(descriptor);
    dds_ostreamLE_t stream;
    dds_ostreamLE_init(&stream, 0, kXcdr2);
    const bool isWritten = dds_stream_write_sampleLE(&stream, sample, type);
    const size_t size = isWritten ? stream.x.m_index : 0;
    *bytes = dds_alloc(size != 0 ? size : 1);
    if (size != 0) {
        memcpy(*bytes, stream.x.m_buffer, size);
    }
    dds_ostreamLE_fini(&stream);
    ddsi_sertype_unref(&type->c);
    return size;
}
