#include "Stranger.h"

#include <stdlib.h>
#include <string.h>

#include <dds/dds.h>
#include <dds/ddsi/ddsi_cdrstream.h>
#include <dds/ddsi/ddsi_serdata_default.h>

#include "ServiceAdmin.h"
#include "ServiceMonitoring.h"

enum { kXcdr2 = 2, kInitialStream = 64 };

struct Stranger {
    struct ddsi_sertype_default type;
    dds_ostream_t stream;
    void *sample;
    void *decoded;
};

static const dds_topic_descriptor_t *descriptorOf(StrangerType type)
{
    switch (type) {
    case STRANGER_COMMAND_REQUEST:
        return &ZUV_Service_Admin_CommandRequest_desc;
    case STRANGER_COMMAND_REPLY:
        return &ZUV_Service_Admin_CommandReply_desc;
    case STRANGER_ENTITY_STATE:
        return &ZUV_Service_EntityState_desc;
    case STRANGER_RESOURCE_GUID:
        return &ZUV_Service_Monitoring_ResourceGuid_desc;
    default:
        return &ZUV_Service_Monitoring_KeyedResource_desc;
    }
}

static void describe(struct ddsi_sertype_default *type, const dds_topic_descriptor_t *descriptor)
{
    type->type.size = descriptor->m_size;
    type->type.align = descriptor->m_align;
    type->type.flagset = descriptor->m_flagset;
    type->type.ops.nops =
        dds_stream_countops(descriptor->m_ops, descriptor->m_nkeys, descriptor->m_keys);
    type->type.ops.ops = (uint32_t *)(uintptr_t)descriptor->m_ops;
    type->opt_size_xcdr2 = dds_stream_check_optimize(&type->type, kXcdr2);
}

static int readInto(Stranger *self, uint8_t *octets, uint32_t size, void *sample)
{
    uint32_t actualSize = 0;
    if (!dds_stream_normalize(octets, size, false, kXcdr2, &self->type, false, &actualSize)) {
        return 0;
    }
    dds_istream_t stream;
    dds_istream_init(&stream, actualSize, octets, kXcdr2);
    dds_stream_read_sample(&stream, sample, &self->type);
    dds_istream_fini(&stream);
    return 1;
}

Stranger *stranger_new(StrangerType type, uint8_t *octets, uint32_t size)
{
    const dds_topic_descriptor_t *descriptor = descriptorOf(type);
    Stranger *self = calloc(1, sizeof(*self));
    describe(&self->type, descriptor);
    dds_ostream_init(&self->stream, kInitialStream, kXcdr2);
    self->sample = calloc(1, descriptor->m_size);
    self->decoded = calloc(1, descriptor->m_size);
    if (!readInto(self, octets, size, self->sample)) {
        stranger_delete(self);
        return NULL;
    }
    return self;
}

void stranger_delete(Stranger *self)
{
    dds_ostream_fini(&self->stream);
    dds_stream_free_sample(self->sample, self->type.type.ops.ops);
    dds_stream_free_sample(self->decoded, self->type.type.ops.ops);
    free(self->sample);
    free(self->decoded);
    free(self);
}

size_t stranger_encode(Stranger *self, int isReused, const uint8_t **octets)
{
    if (isReused) {
        self->stream.m_index = 0;
    } else {
        dds_ostream_fini(&self->stream);
        dds_ostream_init(&self->stream, kInitialStream, kXcdr2);
    }
    const bool isWritten = dds_stream_write_sample(&self->stream, self->sample, &self->type);
    *octets = self->stream.m_buffer;
    return isWritten ? self->stream.m_index : 0;
}

int stranger_decode(Stranger *self, uint8_t *octets, uint32_t size, int isReused)
{
    if (!isReused) {
        dds_stream_free_sample(self->decoded, self->type.type.ops.ops);
        memset(self->decoded, 0, self->type.type.size);
    }
    return readInto(self, octets, size, self->decoded);
}
