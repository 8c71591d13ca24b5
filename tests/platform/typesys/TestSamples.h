// Samples with a value in every member, and payloads written word by word.
#ifndef ZUV_TESTS_PLATFORM_TYPESYS_TEST_SAMPLES_H
#define ZUV_TESTS_PLATFORM_TYPESYS_TEST_SAMPLES_H

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "TestTypes.h"
#include "platform/typesys/String.h"

namespace zuv_test
{

// A sample of a type of the tests, finalized at the end of its scope.
template <typename T>
class Sample
{
public:
    explicit Sample(const DDS_TypeCode &type) : type_(&type)
    {
        ZUVSample_initializeEx(type_, &value_, DDS_BOOLEAN_TRUE, DDS_BOOLEAN_TRUE);
    }
    ~Sample() { ZUVSample_finalizeEx(type_, &value_, DDS_BOOLEAN_TRUE); }
    Sample(const Sample &) = delete;
    Sample &operator=(const Sample &) = delete;

    T *operator->() { return &value_; }
    T &operator*() { return value_; }
    T *operator&() { return &value_; }
    const DDS_TypeCode *type() const { return type_; }

private:
    const DDS_TypeCode *type_;
    T value_;
};

#define ZUV_TEST_SAMPLE(T, NAME) zuv_test::Sample<T> NAME(T##_g_typecode)

// Writes the parts of a payload as told: what a test expects, independent of the code under test.
class Wire
{
public:
    explicit Wire(std::uint16_t identifier, bool isLittleEndian = true)
        : isLittleEndian_(isLittleEndian)
    {
        octets_ = {static_cast<std::uint8_t>(identifier >> 8),
                   static_cast<std::uint8_t>(identifier), 0, 0};
    }

    Wire &align(std::size_t alignment)
    {
        while ((octets_.size() - 4) % alignment != 0) {
            octets_.push_back(0);
        }
        return *this;
    }
    Wire &u8(unsigned value)
    {
        octets_.push_back(static_cast<std::uint8_t>(value));
        return *this;
    }
    Wire &u16(std::uint16_t value) { return number(value, 2, 2); }
    Wire &u32(std::uint32_t value) { return number(value, 4, 4); }
    Wire &u64(std::uint64_t value) { return number(value, 8, 4); }
    Wire &f32(float value)
    {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof(bits));
        return u32(bits);
    }
    Wire &f64(double value)
    {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof(bits));
        return u64(bits);
    }
    Wire &text(std::string_view value)
    {
        u32(static_cast<std::uint32_t>(value.size() + 1));
        octets_.insert(octets_.end(), value.begin(), value.end());
        return u8(0);
    }

    // A word that tells the size of what stands between begin and end.
    Wire &begin()
    {
        u32(0);
        open_.push_back(octets_.size());
        return *this;
    }
    Wire &end()
    {
        patch(open_.back() - 4, static_cast<std::uint32_t>(octets_.size() - open_.back()));
        open_.pop_back();
        return *this;
    }

    void patch(std::size_t offset, std::uint32_t value)
    {
        for (std::size_t i = 0; i < 4; ++i) {
            octets_[offset + i] =
                static_cast<std::uint8_t>(value >> 8 * (isLittleEndian_ ? i : 3 - i));
        }
    }

    // The payload, padded to four with the padding told in the header.
    std::vector<std::uint8_t> payload()
    {
        const std::size_t before = octets_.size();
        align(4);
        octets_[3] = static_cast<std::uint8_t>(octets_.size() - before);
        return octets_;
    }

    std::size_t size() const { return octets_.size(); }

private:
    Wire &number(std::uint64_t value, std::size_t size, std::size_t alignment)
    {
        align(alignment);
        for (std::size_t i = 0; i < size; ++i) {
            u8(static_cast<unsigned>(value >> 8 * (isLittleEndian_ ? i : size - 1 - i) & 0xff));
        }
        return *this;
    }

    bool isLittleEndian_;
    std::vector<std::uint8_t> octets_;
    std::vector<std::size_t> open_;
};

// Give every member of a sample a value, and write what its payload is. With `isSparse` the optional
// members are absent and the sequences empty.
void fill(TestMutable &sample, bool isSparse);
void write(Wire &wire, const TestMutable &sample);
void fill(TestEverything &sample, bool isSparse);
void write(Wire &wire, const TestEverything &sample);

} // namespace zuv_test

#endif
