/* Prints samples of the types that services share and of the monitoring model as a stranger serializes them: Cyclone DDS, and ServiceMonitoring.idl
 * alone. Each line is a name and the octets, little endian, without the encapsulation header. */
#include <stdio.h>
#include <stdlib.h>

#include "BothRepresentations.h"
#include "ServiceMonitoring.h"

typedef ZUV_Service_Monitoring_StatisticVariable Variable;
typedef ZUV_Service_Monitoring_ThreadPeriodic Thread;

static void print(const char *name, const dds_topic_descriptor_t *descriptor, const void *sample)
{
    unsigned char *bytes = NULL;
    const size_t size = serializeXcdr2(descriptor, sample, &bytes);
    if (size == 0) {
        fprintf(stderr, "%s: cannot be serialized\n", name);
        exit(EXIT_FAILURE);
    }
    printf("%s ", name);
    for (size_t index = 0; index < size; ++index) {
        printf("%02x", bytes[index]);
    }
    putchar('\n');
    dds_free(bytes);
}

#define PRINT(NAME, T, ...)                                                                        \
    do {                                                                                           \
        const ZUV_Service_Monitoring_##T sample = __VA_ARGS__;                                     \
        print(NAME, &ZUV_Service_Monitoring_##T##_desc, &sample);                                  \
    } while (0)

static void printShared(void)
{
    const ZUV_Service_EntityState state = {ZUV_Service_RUNNING};
    const ZUV_Service_BuiltinTopicKey key = {{1, 0x01020304, 0, 0xffffffff}};
    print("entity_state", &ZUV_Service_EntityState_desc, &state);
    print("builtin_topic_key", &ZUV_Service_BuiltinTopicKey_desc, &key);
}

static void printResources(void)
{
    ZUV_Service_Monitoring_KeyedResource resource;
    for (unsigned char index = 0; index < 16; ++index) {
        resource.object_guid.value[index] = (unsigned char)(index + 1);
        resource.owner_guid.value[index] = (unsigned char)(index + 0xf0);
    }
    print("resource_guid", &ZUV_Service_Monitoring_ResourceGuid_desc, &resource.object_guid);
    print("keyed_resource", &ZUV_Service_Monitoring_KeyedResource_desc, &resource);
}

static void printProcesses(Variable *first, Variable *second)
{
    PRINT("process_config", ProcessConfig, {0x123456789abcdef0});
    PRINT("process_periodic_bare", ProcessPeriodic, {NULL, NULL, NULL, 7});
    PRINT("process_periodic_some", ProcessPeriodic, {NULL, first, NULL, -7});
    PRINT("process_periodic_full", ProcessPeriodic, {first, second, first, 7});
    PRINT("thread_periodic_bare", ThreadPeriodic, {5, NULL});
    PRINT("thread_periodic_full", ThreadPeriodic, {5, first});

    Thread threads[] = {{1, first}, {2, NULL}, {3, second}};
    dds_sequence_ZUV_Service_Monitoring_ThreadPeriodic none = {0, 0, NULL, false};
    dds_sequence_ZUV_Service_Monitoring_ThreadPeriodic three = {3, 3, threads, false};
    PRINT("thread_pool_absent", ThreadPoolPeriodic, {NULL});
    PRINT("thread_pool_empty", ThreadPoolPeriodic, {&none});
    PRINT("thread_pool_three", ThreadPoolPeriodic, {&three});
}

int main(void)
{
    Variable first = {{1000, 42, 1.5F, -1, 2, 0.25F}};
    Variable second = {{5000, -1, 0, 0, 3.4028234663852886e+38F, 0}};

    printShared();
    printResources();
    print("statistic_metrics", &ZUV_Service_Monitoring_StatisticMetrics_desc,
          &first.publication_period_metrics);
    print("statistic_variable", &ZUV_Service_Monitoring_StatisticVariable_desc, &second);
    PRINT("count_status", CountStatus, {1, -2, 3});
    printProcesses(&first, &second);
    PRINT("host_config", HostConfig, {"host", 0x9abcdef0, 1, 2, "x86_64Linux"});
    PRINT("host_periodic_bare", HostPeriodic, {NULL, NULL, NULL, 7});
    PRINT("host_periodic_some", HostPeriodic, {&first, NULL, &second, 7});
    PRINT("host_periodic_full", HostPeriodic, {&first, &second, &first, 7});
    PRINT("network_performance_bare", NetworkPerformance, {NULL, NULL, NULL});
    PRINT("network_performance_some", NetworkPerformance, {NULL, NULL, &first});
    PRINT("network_performance_full", NetworkPerformance, {&first, &second, &first});
    PRINT("entity_config_empty", EntityConfig, {"", (char *)""});
    PRINT("entity_config", EntityConfig, {"/services/a/routes/b", (char *)"<route name=\"b\"/>"});
    PRINT("entity_event", EntityEvent, {ZUV_Service_PAUSED});
    return EXIT_SUCCESS;
}
