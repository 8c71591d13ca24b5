// Joins a domain, tells on standard output what sockets and groups that made, leaves, and tells what is left.
//
//   dds_socket_probe DOMAIN [stay]
//
// With "stay" it leaves only when it is killed.
//
// One line each: "udp ADDRESS" for each bound UDP socket of this process, "igmp GROUP" for each multicast group of the
// network namespace, "shm NAME" for each shared memory file of this process, first "joined", last "left".
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <unistd.h>

#include "platform/dds/DomainParticipantFactory.h"

namespace
{

std::set<std::string> ownSockets()
{
    std::set<std::string> inodes;
    DIR *const folder = opendir("/proc/self/fd");
    while (const dirent *const entry = readdir(folder)) {
        char target[64] = {};
        const std::string path = std::string("/proc/self/fd/") + entry->d_name;
        if (readlink(path.c_str(), target, sizeof(target) - 1) > 0 &&
            std::strncmp(target, "socket:[", 8) == 0) {
            inodes.insert(std::string(target + 8, std::strlen(target) - 9));
        }
    }
    closedir(folder);
    return inodes;
}

void tellSockets(const char *table)
{
    const std::set<std::string> own = ownSockets();
    std::ifstream file(table);
    std::string line;
    std::getline(file, line); // the heading
    while (std::getline(file, line)) {
        std::istringstream fields(line);
        std::string slot, local, skipped, inode;
        fields >> slot >> local;
        for (int index = 0; index < 7; ++index) {
            fields >> skipped;
        }
        fields >> inode;
        if (own.count(inode) != 0) {
            std::printf("udp %s\n", local.substr(0, local.find(':')).c_str());
        }
    }
}

void tellGroups()
{
    std::ifstream file("/proc/net/igmp");
    std::string line;
    while (std::getline(file, line)) {
        if (!line.empty() && line[0] == '\t') {
            std::istringstream fields(line);
            std::string group;
            fields >> group;
            std::printf("igmp %s\n", group.c_str());
        }
    }
}

void tellSharedMemory()
{
    std::ifstream file("/proc/self/maps");
    std::set<std::string> names;
    std::string line;
    while (std::getline(file, line)) {
        const std::size_t start = line.find("/dev/shm/");
        if (start != std::string::npos) {
            names.insert(line.substr(start));
        }
    }
    for (const std::string &name : names) {
        std::printf("shm %s\n", name.c_str());
    }
}

} // namespace

int main(int argc, char **argv)
{
    DDS_DomainParticipantFactory *const factory = DDS_DomainParticipantFactory_get_instance();
    DDS_DomainParticipant *const participant = DDS_DomainParticipantFactory_create_participant(
        factory, argc > 1 ? std::atoi(argv[1]) : 0, &DDS_PARTICIPANT_QOS_DEFAULT, nullptr,
        DDS_STATUS_MASK_NONE);
    if (participant == nullptr) {
        return 1;
    }
    std::puts("joined");
    if (argc > 2) {
        std::fflush(stdout);
        pause();
    }
    tellSockets("/proc/net/udp");
    tellSockets("/proc/net/udp6");
    tellGroups();
    tellSharedMemory();
    DDS_DomainParticipantFactory_delete_participant(factory, participant);
    DDS_DomainParticipantFactory_finalize_instance();
    std::puts("left");
    tellSharedMemory();
    return 0;
}
