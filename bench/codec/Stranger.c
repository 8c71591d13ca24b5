#include "Stranger.h"

#include <stdlib.h>
#include <string.h>

#include <dds/dds.h>
#include <dds/ddsi/ddsi_cdrstream.h>
#include <dds/ddsi/ddsi_serdata_default.h>

#include "ServiceAdmin.h"

enum { kXcdr2 = 2, kInitialStream = 64 };

typedef ZUV_Service_Admin_CommandRequest Request;

struct Stranger {
    struct ddsi_sertype_default type;
    dds_ostream_t stream;
    Request request;
    Request decoded;
};

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

Stranger *stranger_new(const char *name, const char *identifier, const char *body, uint8_t *octets,
                       uint32_t octetCount)
{
    Stranger *self = calloc(1, sizeof(*self));
    describe(&self->type, &ZUV_Service_Admin_CommandRequest_desc);
    dds_ostream_init(&self->stream, kInitialStream, kXcdr2);
    self->request.application_name = (void *)(uintptr_t)name;
    self->request.action = ZUV_Service_Admin_UPDATE_ACTION;
    strcpy(self->request.resource_identifier, identifier);
    self->request.string_body = (char *)(uintptr_t)body;
    self->request.octet_body._buffer = octets;
    self->request.octet_body._length = octetCount;
    self->request.octet_body._maximum = octetCount;
    return self;
}

void stranger_delete(Stranger *self)
{
    dds_ostream_fini(&self->stream);
    dds_stream_free_sample(&self->decoded, self->type.type.ops.ops);
    free(self);
}

size_t stranger_encode(Stranger *self, int isReused)
{
    if (isReused) {
        self->stream.m_index = 0;
    } else {
        dds_ostream_fini(&self->stream);
        dds_ostream_init(&self->stream, kInitialStream, kXcdr2);
    }
    return dds_stream_write_sample(&self->stream, &self->request, &self->type)
               ? self->stream.m_index
               : 0;
}

int stranger_decode(Stranger *self, void *octets, uint32_t size, int isReused)
{
    uint32_t actualSize = 0;
    if (!dds_stream_normalize(octets, size, false, kXcdr2, &self->type, false, &actualSize)) {
        return 0;
    }
    if (!isReused) {
        dds_stream_free_sample(&self->decoded, self->type.type.ops.ops);
        memset(&self->decoded, 0, sizeof(self->decoded));
    }
    dds_istream_t stream;
    dds_istream_init(&stream, actualSize, octets, kXcdr2);
    dds_stream_read_sample(&stream, &self->decoded, &self->type);
    dds_istream_fini(&stream);
    return 1;
}
