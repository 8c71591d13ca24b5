#include "remoteShell/ShellParameterManager.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "config/ProductInfo.h"
#include "log/Log.h"
#include "log/Report.hpp"
#include "platform/kolm/Version.h"
#include "platform/log/LogMessages.h"
#include "platform/mavo/String.h"
#include "platform/osapi/Heap.h"

const BRELShellParameterDesc BRELShellParameterManager_g_parameterDesc[BREL_SHELL_PARAMETER_COUNT] =
    {
        {"domainId", BREL_SHELL_PARAMETER_TYPE_INT, "", 0, 1},
        {"timeout", BREL_SHELL_PARAMETER_TYPE_INT, "", 0, 1},
        {"cmdFile", BREL_SHELL_PARAMETER_TYPE_STRING, "", 0, 1},
        {"help", BREL_SHELL_PARAMETER_TYPE_VOID, "Displays this information", 0, 1},
};

const char *const BRELShellParameterManager_g_parameterTypeDesc[3] = {"", "<string>", "<integer>"};

namespace
{

void reportParameter(const ZUVLogMessage &message, const char *parameter,
                     const brel::Place &place = brel::Place::current())
{
    brel::report(BREL_SUBMODULE_PARAMETER_MANAGER, message, parameter, place);
}

// The id of the first option that has a value and whose name begins with `key`, or -1. An empty key begins
// every name.
int findParameter(const char *key)
{
    const std::size_t length = std::strlen(key);
    for (int id = 0; id < BREL_SHELL_PARAMETER_VALUE_COUNT; ++id) {
        if (MAVOString_inCompare(BRELShellParameterManager_g_parameterDesc[id].name, key, length) ==
            0) {
            return id;
        }
    }
    return -1;
}

// Read the option at argv[index] and move the index behind it and its value.
bool parseArgument(BRELShellParameterManager &self, int argc, char **argv, int &index)
{
    const char *const argument = argv[index++];
    if (argument[0] != '-') {
        reportParameter(BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s, argument);
        return false;
    }
    const char *const key = argument + 1;
    const int id = findParameter(key);
    if (id < 0) {
        reportParameter(BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s, key);
        return false;
    }
    BRELShellParameterValue &slot = self._parameterValues[id];
    slot.exists = 1;
    if (BRELShellParameterManager_g_parameterDesc[id].type == BREL_SHELL_PARAMETER_TYPE_VOID) {
        return true;
    }
    if (index >= argc) {
        reportParameter(BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s, key);
        return false;
    }
    slot.value = argv[index++];
    return true;
}

bool hasRequiredParameters(const BRELShellParameterManager &self)
{
    for (int id = 0; id < BREL_SHELL_PARAMETER_VALUE_COUNT; ++id) {
        const BRELShellParameterDesc &row = BRELShellParameterManager_g_parameterDesc[id];
        if (row.required != 0 && self._parameterValues[id].exists == 0) {
            reportParameter(BREL_LOG_PARAMETER_MANAGER_REQUIRED_PARAMETER_s, row.name);
            return false;
        }
    }
    return true;
}

bool storeInteger(const char *text, int parameterId, void *value)
{
    char *end = nullptr;
    const long number = std::strtol(text, &end, 10);
    if (end == text) {
        reportParameter(BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s,
                        BRELShellParameterManager_g_parameterDesc[parameterId].name);
        return false;
    }
    *static_cast<int32_t *>(value) = static_cast<int32_t>(number);
    return true;
}

} // namespace

BRELShellParameterManager *BRELShellParameterManager_new(int argc, char **argv)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_PARAMETER_MANAGER, argc < 1 || argv == nullptr,
                         "\"argc < 1 || argv == ((void *)0)\"")) {
        return nullptr;
    }
    auto *const self = static_cast<BRELShellParameterManager *>(ZUVOsapiHeap_allocateZeroed(
        sizeof(BRELShellParameterManager), "BRELShellParameterManager"));
    if (self == nullptr) {
        ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_PARAMETER_MANAGER,
                &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                static_cast<int>(sizeof(BRELShellParameterManager)));
        return nullptr;
    }
    if (!BRELShellParameterManager_initialize(self, argc, argv)) {
        reportParameter(ZUV_LOG_INIT_FAILURE_s, "parameter manager");
        ZUVOsapiHeap_free(self);
        return nullptr;
    }
    return self;
}

void BRELShellParameterManager_delete(BRELShellParameterManager *self)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_PARAMETER_MANAGER, self == nullptr,
                         "\"self == ((void *)0)\"")) {
        return;
    }
    BRELShellParameterManager_finalize(self);
    ZUVOsapiHeap_free(self);
}

int BRELShellParameterManager_initialize(BRELShellParameterManager *self, int argc, char **argv)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_PARAMETER_MANAGER,
                         self == nullptr || argc < 1 || argv == nullptr,
                         "\"self == ((void *)0) || argc < 1 || argv == ((void *)0)\"")) {
        return 0;
    }
    if (self->_init == BREL_SHELL_PARAMETER_MANAGER_INITIALIZED) {
        return 1;
    }
    for (BRELShellParameterValue &slot : self->_parameterValues) {
        slot = {};
    }
    for (int index = 1; index < argc;) {
        if (!parseArgument(*self, argc, argv, index)) {
            return 0;
        }
    }
    if (!hasRequiredParameters(*self)) {
        return 0;
    }
    self->_init = BREL_SHELL_PARAMETER_MANAGER_INITIALIZED;
    return 1;
}

void BRELShellParameterManager_finalize(BRELShellParameterManager *self)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_PARAMETER_MANAGER, self == nullptr,
                         "\"self == ((void *)0)\"")) {
        return;
    }
    self->_init = BREL_SHELL_PARAMETER_MANAGER_FINALIZED;
}

int BRELShellParameterManager_getParameter(BRELShellParameterManager *self, void *value, int *exist,
                                           int parameterId, BRELShellParameterType parameterType)
{
    if (ZUV_PRECONDITION(
            BREL, BREL_SUBMODULE_PARAMETER_MANAGER,
            self == nullptr || parameterType < BREL_SHELL_PARAMETER_TYPE_VOID ||
                parameterType > BREL_SHELL_PARAMETER_TYPE_INT,
            "\"self == ((void *)0) || parameterType < BREL_SHELL_PARAMETER_TYPE_VOID || "
            "parameterType > BREL_SHELL_PARAMETER_TYPE_INT\"") ||
        ZUV_PRECONDITION(
            BREL, BREL_SUBMODULE_PARAMETER_MANAGER,
            parameterId < 0 || parameterId >= BREL_SHELL_PARAMETER_VALUE_COUNT,
            "\"parameterId < 0 || parameterId >= BREL_SHELL_PARAMETER_VALUE_COUNT\"")) {
        return 0;
    }
    const BRELShellParameterValue &slot = self->_parameterValues[parameterId];
    if (exist != nullptr) {
        *exist = slot.exists != 0 ? 1 : 0;
    }
    if (slot.exists == 0 || value == nullptr) {
        return 1;
    }
    switch (parameterType) {
    case BREL_SHELL_PARAMETER_TYPE_STRING:
        *static_cast<const char **>(value) = slot.value;
        break;
    case BREL_SHELL_PARAMETER_TYPE_INT:
        return storeInteger(slot.value, parameterId, value) ? 1 : 0;
    case BREL_SHELL_PARAMETER_TYPE_VOID:
        break;
    }
    return 1;
}

void BRELShellParameterManager_printVersion(void)
{
    DDS_ProductVersion_t version = {};
    KOLM_Config_Version_get_product_version(&version);
    const char *const productName = BRELProductInfo_get()->productName;
    if (version.revision < 1) {
        std::printf("%s Shell %d.%d.%d\n", productName, version.major, version.minor,
                    version.release);
    } else {
        std::printf("%s Shell %d.%d.%d (rev %d)\n", productName, version.major, version.minor,
                    version.release, version.revision);
    }
}

void BRELShellParameterManager_printHelp(char *programName)
{
    BRELShellParameterManager_printVersion();
    std::printf("Usage: %s [options]...\n\nOptions:\n", programName);
    std::puts(" -domainId  <integer>   Domain ID for the remote configuration");
    std::puts(" -timeout   <seconds>   Max time to wait for a remote response");
    std::puts(" -cmdFile   <file>      Run commands in this file");
    std::puts(" -help                  Displays this information");
}

void BRELShellParameterManager_printUsage(char *programName)
{
    BRELShellParameterManager_printHelp(programName);
}
