/* The other end of the administration protocol, by a stranger: Cyclone DDS, and ServiceAdmin.idl alone.
 *
 *   cyclone_peer read DOMAIN COUNT SECONDS    print the next COUNT requests
 *   cyclone_peer ask DOMAIN SECONDS APPLICATION ACTION IDENTIFIER BODY TAG
 *                                             send one request, print the first reply; APPLICATION "-" is
 *                                             absent, TAG "-" is empty
 *   cyclone_peer vectors                      print samples as this implementation serializes them
 *
 * Exit status 0 when all that was asked for came in time. */
#include <inttypes.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "BothRepresentations.h"
#include "ServiceAdmin.h"

typedef ZUV_Service_Admin_CommandRequest Request;
typedef ZUV_Service_Admin_CommandReply Reply;

static dds_entity_t check(dds_entity_t result, const char *what)
{
    if (result < 0) {
        fprintf(stderr, "%s: %s\n", what, dds_strretcode(-result));
        exit(EXIT_FAILURE);
    }
    return result;
}

typedef struct Peer {
    dds_entity_t participant, requestTopic, replyTopic;
    dds_qos_t *qos;
} Peer;

static Peer openPeer(const char *domain)
{
    Peer peer;
    peer.participant =
        check(dds_create_participant((dds_domainid_t)atoi(domain), NULL, NULL), "participant");
    peer.requestTopic = check(
        createTopicOfBothRepresentations(peer.participant, &ZUV_Service_Admin_CommandRequest_desc,
                                         "zuv/service/admin/command_request"),
        "request topic");
    peer.replyTopic = check(createTopicOfBothRepresentations(peer.participant,
                                                             &ZUV_Service_Admin_CommandReply_desc,
                                                             "zuv/service/admin/command_reply"),
                            "reply topic");
    peer.qos = dds_create_qos();
    dds_qset_reliability(peer.qos, DDS_RELIABILITY_RELIABLE, DDS_SECS(10));
    dds_qset_history(peer.qos, DDS_HISTORY_KEEP_ALL, 0);
    announceBothRepresentations(peer.qos);
    return peer;
}

static void closePeer(Peer *peer)
{
    dds_delete_qos(peer->qos);
    dds_delete(peer->participant);
}

/* Wait until the entity has one of the statuses in `mask`; false at the deadline. */
static bool waitForStatus(dds_entity_t entity, uint32_t mask, dds_time_t deadline)
{
    check(dds_set_status_mask(entity, mask), "status mask");
    const dds_entity_t set = check(dds_create_waitset(dds_get_participant(entity)), "wait set");
    check(dds_waitset_attach(set, entity, 0), "attach");
    const bool isTriggered = dds_waitset_wait_until(set, NULL, 0, deadline) > 0;
    dds_delete(set);
    return isTriggered;
}

static void printOctets(const dds_sequence_octet *octets)
{
    for (uint32_t index = 0; index < octets->_length; ++index) {
        const unsigned char octet = octets->_buffer[index];
        if (octet >= 32 && octet < 127) {
            putchar(octet);
        } else {
            printf("\\%02x", octet);
        }
    }
}

static void printRequest(const void *sample)
{
    const Request *request = sample;
    printf("instance_id=%" PRId32
           " application_name=%s action=%d resource_identifier=%s string_body=%s "
           "octet_body=",
           request->instance_id,
           request->application_name != NULL ? *request->application_name : "(absent)",
           (int)request->action, request->resource_identifier, request->string_body);
    printOctets(&request->octet_body);
    putchar('\n');
    fflush(stdout);
}

static void printReply(const void *sample)
{
    const Reply *reply = sample;
    printf("retcode=%d native_retcode=%" PRId32 " string_body=%s octet_body=", (int)reply->retcode,
           reply->native_retcode, reply->string_body);
    printOctets(&reply->octet_body);
    putchar('\n');
    fflush(stdout);
}

/* Take and print valid samples until `count` came; false at the deadline. */
static bool takeAndPrint(dds_entity_t reader, int count, dds_time_t deadline,
                         void (*print)(const void *))
{
    while (count > 0) {
        void *sample = NULL;
        dds_sample_info_t info;
        const dds_return_t taken = check(dds_take(reader, &sample, &info, 1, 1), "take");
        if (taken == 0) {
            if (!waitForStatus(reader, DDS_DATA_AVAILABLE_STATUS, deadline)) {
                return false;
            }
            continue;
        }
        if (info.valid_data) {
            print(sample);
            --count;
        }
        dds_return_loan(reader, &sample, taken);
    }
    return true;
}

static int readRequests(char **arguments)
{
    Peer peer = openPeer(arguments[0]);
    const dds_time_t deadline = dds_time() + DDS_SECS(atoi(arguments[2]));
    const dds_entity_t reader =
        check(dds_create_reader(peer.participant, peer.requestTopic, peer.qos, NULL), "reader");
    printf("ready\n");
    fflush(stdout);
    const bool isComplete = takeAndPrint(reader, atoi(arguments[1]), deadline, printRequest);
    closePeer(&peer);
    return isComplete ? EXIT_SUCCESS : EXIT_FAILURE;
}

/* A request whose texts and octets are borrowed. */
static Request makeRequest(char (*application)[256], ZUV_Service_Admin_CommandActionKind action,
                           const char *identifier, const char *body, const void *octets,
                           size_t octetCount)
{
    Request request = {.application_name = application, .action = action};
    if (application != NULL && strcmp(*application, "-") == 0) {
        request.application_name = NULL;
    }
    snprintf(request.resource_identifier, sizeof request.resource_identifier, "%s", identifier);
    request.string_body = (char *)body;
    request.octet_body._buffer = (uint8_t *)octets;
    request.octet_body._length = request.octet_body._maximum = (uint32_t)octetCount;
    return request;
}

static int ask(char **arguments)
{
    Peer peer = openPeer(arguments[0]);
    const dds_time_t deadline = dds_time() + DDS_SECS(atoi(arguments[1]));
    const dds_entity_t reader =
        check(dds_create_reader(peer.participant, peer.replyTopic, peer.qos, NULL), "reader");
    const dds_entity_t writer =
        check(dds_create_writer(peer.participant, peer.requestTopic, peer.qos, NULL), "writer");
    bool isComplete = waitForStatus(writer, DDS_PUBLICATION_MATCHED_STATUS, deadline) &&
                      waitForStatus(reader, DDS_SUBSCRIPTION_MATCHED_STATUS, deadline);
    if (isComplete) {
        char application[256];
        snprintf(application, sizeof application, "%s", arguments[2]);
        const char *tag = arguments[6];
        const size_t tagSize = strcmp(tag, "-") == 0 ? 0 : strlen(tag) + 1;
        const Request request =
            makeRequest(&application, (ZUV_Service_Admin_CommandActionKind)atoi(arguments[3]),
                        arguments[4], arguments[5], tag, tagSize);
        check(dds_write(writer, &request), "write");
        isComplete = takeAndPrint(reader, 1, deadline, printReply);
    }
    closePeer(&peer);
    return isComplete ? EXIT_SUCCESS : EXIT_FAILURE;
}

static void printVector(const char *name, const dds_topic_descriptor_t *descriptor,
                        const void *sample)
{
    unsigned char *bytes = NULL;
    const size_t size = serializeXcdr2(descriptor, sample, &bytes);
    printf("%s ", name);
    for (size_t index = 0; index < size; ++index) {
        printf("%02x", bytes[index]);
    }
    putchar('\n');
    dds_free(bytes);
}

static void printRequestVector(const char *name, const Request *request)
{
    printVector(name, &ZUV_Service_Admin_CommandRequest_desc, request);
}

static void printReplyVector(const char *name, const Reply *reply)
{
    printVector(name, &ZUV_Service_Admin_CommandReply_desc, reply);
}

static int printVectors(char **arguments)
{
    (void)arguments;
    static const char stateTag[] = "resource://state";
    char application[256] = "S1";

    Request request = makeRequest(NULL, ZUV_Service_Admin_CREATE_ACTION, "", "", NULL, 0);
    printRequestVector("request_empty", &request);
    request = makeRequest(&application, ZUV_Service_Admin_UPDATE_ACTION, "domain_route.dr1\n",
                          "ENABLED", stateTag, sizeof stateTag);
    printRequestVector("request_enable", &request);
    request = makeRequest(&application, ZUV_Service_Admin_DELETE_ACTION, "", "abc", "\1\2\3", 3);
    request.instance_id = -2;
    printRequestVector("request_odd_sizes", &request);
    memset(application, 'a', 255);
    application[255] = '\0';
    request = makeRequest(&application, ZUV_Service_Admin_GET_ACTION, "x", "", NULL, 0);
    memset(request.resource_identifier, 'r', 2048);
    request.resource_identifier[2048] = '\0';
    printRequestVector("request_bounds", &request);

    Reply reply = {.string_body = (char *)""};
    printReplyVector("reply_empty", &reply);
    reply.retcode = ZUV_Service_Admin_ERROR_RETCODE;
    reply.native_retcode = 0x01020304;
    reply.string_body = (char *)"no such entity";
    reply.octet_body._buffer = (uint8_t *)stateTag;
    reply.octet_body._length = reply.octet_body._maximum = sizeof stateTag;
    printReplyVector("reply_error", &reply);
    return EXIT_SUCCESS;
}

typedef struct Mode {
    const char *name;
    int argumentCount;
    int (*run)(char **arguments);
} Mode;

int main(int argc, char **argv)
{
    static const Mode modes[] = {
        {"read", 3, readRequests}, {"ask", 7, ask}, {"vectors", 0, printVectors}};
    for (size_t index = 0; argc > 1 && index < sizeof modes / sizeof *modes; ++index) {
        if (strcmp(argv[1], modes[index].name) == 0 && argc - 2 == modes[index].argumentCount) {
            return modes[index].run(argv + 2);
        }
    }
    fprintf(stderr, "cyclone_peer: bad arguments\n");
    return EXIT_FAILURE;
}
