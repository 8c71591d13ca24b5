#include "platform/kolm/HeapSnapshot.h"

#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdio>

#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "platform/osapi/Process.h"

namespace
{

void printTag(void *file, const char *tag, uint64_t blockCount, uint64_t byteCount)
{
    std::fprintf(static_cast<FILE *>(file), "%" PRIu64 "\t%" PRIu64 "\t%s\n", blockCount, byteCount,
                 tag);
}

void print(FILE *file, bool withDetails)
{
    ZUVOsapiHeapStatistics statistics;
    ZUVOsapiHeap_getStatistics(&statistics);
    std::fprintf(file,
                 "process\t%" PRIu64 "\n"
                 "live blocks\t%" PRIu64 "\n"
                 "live bytes\t%" PRIu64 "\n"
                 "peak bytes\t%" PRIu64 "\n"
                 "allocations\t%" PRIu64 "\n",
                 ZUVOsapiProcess_getId(), statistics.liveBlockCount, statistics.liveByteCount,
                 statistics.peakByteCount, statistics.allocationCount);
    if (withDetails) {
        std::fputs("\nblocks\tbytes\ttag\n", file);
        ZUVOsapiHeap_visitTags(printTag, file);
    }
}

} // namespace

extern "C" int KOLM_Utility_take_heap_snapshot(const char *fileName, int printDetails)
{
    if (ZUV_OSAPI_FAULT("heap_snapshot.open")) {
        errno = EMFILE;
        return 0;
    }
    FILE *const file = std::fopen(fileName, "we");
    if (file == nullptr) {
        return 0;
    }
    print(file, printDetails != 0);
    const bool isPrinted = std::ferror(file) == 0;
    const bool isClosed = std::fclose(file) == 0;
    if (ZUV_OSAPI_FAULT("heap_snapshot.write")) {
        errno = ENOSPC;
        return 0;
    }
    return isPrinted && isClosed ? 1 : 0;
}
