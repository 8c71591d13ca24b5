#include "platform/typesys/String.h"

#include <cstdint>
#include <cstring>

#include "platform/osapi/Heap.h"

namespace
{

constexpr const char *kTag = "DDS_String";

} // namespace

char *DDS_String_alloc(size_t length)
{
    if (length == SIZE_MAX) {
        return nullptr;
    }
    char *text = static_cast<char *>(ZUVOsapiHeap_allocate(length + 1, kTag));
    if (text != nullptr) {
        *text = '\0';
    }
    return text;
}

char *DDS_String_dup(const char *text)
{
    char *copy = nullptr;
    return DDS_String_replace(&copy, text);
}

char *DDS_String_replace(char **text, const char *newText)
{
    if (text == nullptr) {
        return nullptr;
    }
    if (newText == nullptr) {
        DDS_String_free(*text);
        *text = nullptr;
        return nullptr;
    }
    const size_t size = std::strlen(newText) + 1;
    if (*text == nullptr || ZUVOsapiHeap_getBlockSize(*text) < size) {
        char *storage = static_cast<char *>(ZUVOsapiHeap_allocate(size, kTag));
        if (storage == nullptr) {
            return nullptr;
        }
        std::memcpy(storage, newText, size);
        DDS_String_free(*text);
        *text = storage;
    } else {
        std::memmove(*text, newText, size);
    }
    return *text;
}

void DDS_String_free(char *text)
{
    ZUVOsapiHeap_free(text);
}
