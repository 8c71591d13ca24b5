#include "TestSamples.h"

namespace zuv_test
{
namespace
{

constexpr std::uint32_t kMustUnderstand = 0x80000000u;

constexpr std::uint32_t memberHeader(unsigned lengthCode, std::uint32_t id)
{
    return lengthCode << 28 | id;
}

void setText(char *&text, const char *value)
{
    DDS_String_replace(&text, value);
}

void writeInner(Wire &wire, const TestInner &inner)
{
    wire.begin().u8(inner.a).u32(static_cast<std::uint32_t>(inner.b)).end();
}

void writePoint(Wire &wire, const TestPoint &point)
{
    wire.u32(static_cast<std::uint32_t>(point.x)).u32(static_cast<std::uint32_t>(point.y));
}

void writeOctets(Wire &wire, const DDS_OctetSeq &octets)
{
    wire.u32(octets._length);
    for (std::uint32_t i = 0; i < octets._length; ++i) {
        wire.u8(octets._contiguous_buffer[i]);
    }
}

void writeLongs(Wire &wire, const DDS_LongSeq &longs)
{
    wire.u32(longs._length);
    for (std::uint32_t i = 0; i < longs._length; ++i) {
        wire.u32(static_cast<std::uint32_t>(longs._contiguous_buffer[i]));
    }
}

} // namespace

void fill(TestMutable &sample, bool isSparse)
{
    sample.id = -5;
    setText(sample.name, "mutable");
    sample.weight = 2.5;
    sample.point = {11, -12};
    sample.inner = {13, 14};
    sample.color = TestColor_BLUE;
    if (isSparse) {
        return;
    }
    setText(sample.note, "a note");
    sample.maybe = TestInnerPluginSupport_create_data();
    *sample.maybe = {15, 16};
    const DDS_Octet octets[] = {1, 2, 3};
    DDS_OctetSeq_from_array(&sample.octets, octets, 3);
    const DDS_Long longs[] = {-1, 70000};
    DDS_LongSeq_from_array(&sample.longs, longs, 2);
}

void write(Wire &wire, const TestMutable &sample)
{
    wire.begin();
    wire.u32(kMustUnderstand | memberHeader(2, 0x04b70bb8))
        .u32(static_cast<std::uint32_t>(sample.id));
    wire.u32(memberHeader(5, 0x0c9368b0)).text(sample.name);
    if (sample.note != nullptr) {
        wire.u32(memberHeader(5, 0x0a53d6aa)).text(sample.note);
    }
    wire.u32(memberHeader(3, 0x09bfda7e)).f64(sample.weight);
    wire.u32(memberHeader(4, 0x0a54ee78)).begin();
    writePoint(wire, sample.point);
    wire.end().u32(memberHeader(4, 0x0b5897ea)).begin();
    writeInner(wire, sample.inner);
    wire.end();
    if (sample.maybe != nullptr) {
        wire.u32(memberHeader(4, 0x03ac7a7e)).begin();
        writeInner(wire, *sample.maybe);
        wire.end();
    }
    wire.u32(memberHeader(5, 0x01755348));
    writeOctets(wire, sample.octets);
    wire.u32(memberHeader(6, 0x02759366));
    writeLongs(wire, sample.longs);
    wire.u32(memberHeader(2, 0x0fa5dd70)).u32(sample.color);
    wire.end();
}

void fill(TestEverything &sample, bool isSparse)
{
    sample.flag = DDS_BOOLEAN_TRUE;
    sample.octet = 0xfe;
    sample.letter = 'z';
    sample.small = -2;
    sample.usmall = 0xfffe;
    sample.number = -3;
    sample.unumber = 0xfffffffdu;
    sample.large = -4;
    sample.ularge = 0x0102030405060708u;
    sample.real = 1.5F;
    sample.precise = -0.25;
    sample.color = TestColor_RED;
    setText(sample.name, "everythi");
    setText(sample.text, "some text");
    sample.point = {21, 22};
    sample.inner = {23, 24};
    for (DDS_Long i = 0; i < 3; ++i) {
        sample.three[i] = 31 + i;
    }
    sample.switches[1] = DDS_BOOLEAN_TRUE;
    sample.pair[0] = TestColor_BLUE;
    sample.corners[1] = {41, 42};
    if (isSparse) {
        return;
    }
    sample.maybe_number =
        static_cast<DDS_Long *>(ZUVSample_newEx(&DDS_g_tc_long, DDS_BOOLEAN_TRUE));
    *sample.maybe_number = 51;
    sample.maybe_point = TestPointPluginSupport_create_data();
    *sample.maybe_point = {52, 53};
    setText(sample.maybe_text, "maybe");
    DDS_TypeAllocationParams_t params = DDS_TYPE_ALLOCATION_PARAMS_DEFAULT;
    params.allocate_optional_members = DDS_BOOLEAN_TRUE;
    TestEverything other;
    TestEverything_initialize_w_params(&other, &params);
    std::swap(sample.maybe_longs, other.maybe_longs);
    TestEverything_finalize(&other);
    const DDS_Long longs[] = {61, 62, 63, 64};
    DDS_LongSeq_from_array(sample.maybe_longs, longs, 1);
    DDS_LongSeq_from_array(&sample.longs, longs, 4);
    const DDS_Octet octets[] = {9, 8, 7, 6, 5};
    DDS_OctetSeq_from_array(&sample.octets, octets, 5);
    const DDS_Boolean flags[] = {1, 0, 1};
    DDS_BooleanSeq_from_array(&sample.flags, flags, 3);
    TestNameSeq_ensure_length(&sample.names, 2, 2);
    setText(*TestNameSeq_get_reference(&sample.names, 0), "one");
    setText(*TestNameSeq_get_reference(&sample.names, 1), "");
    const TestPoint points[] = {{71, 72}, {73, 74}};
    TestPointSeq_from_array(&sample.points, points, 2);
    const TestColor colors[] = {TestColor_GREEN, TestColor_BLUE, TestColor_RED};
    TestColorSeq_from_array(&sample.colors, colors, 3);
    TestMutableSeq_ensure_length(&sample.mutables, 2, 2);
    fill(*TestMutableSeq_get_reference(&sample.mutables, 0), false);
    fill(*TestMutableSeq_get_reference(&sample.mutables, 1), true);
}

void write(Wire &wire, const TestEverything &sample)
{
    wire.begin();
    wire.u8(sample.flag).u8(sample.octet).u8(static_cast<unsigned char>(sample.letter));
    wire.u16(static_cast<std::uint16_t>(sample.small)).u16(sample.usmall);
    wire.u32(static_cast<std::uint32_t>(sample.number)).u32(sample.unumber);
    wire.u64(static_cast<std::uint64_t>(sample.large)).u64(sample.ularge);
    wire.f32(sample.real).f64(sample.precise).u32(sample.color);
    wire.text(sample.name).text(sample.text);
    writePoint(wire, sample.point);
    writeInner(wire, sample.inner);
    wire.u8(sample.maybe_number != nullptr);
    if (sample.maybe_number != nullptr) {
        wire.u32(static_cast<std::uint32_t>(*sample.maybe_number));
    }
    wire.u8(sample.maybe_point != nullptr);
    if (sample.maybe_point != nullptr) {
        writePoint(wire, *sample.maybe_point);
    }
    wire.u8(sample.maybe_text != nullptr);
    if (sample.maybe_text != nullptr) {
        wire.text(sample.maybe_text);
    }
    wire.u8(sample.maybe_longs != nullptr);
    if (sample.maybe_longs != nullptr) {
        writeLongs(wire, *sample.maybe_longs);
    }
    writeOctets(wire, sample.octets);
    writeLongs(wire, sample.longs);
    wire.u32(sample.flags._length);
    for (std::uint32_t i = 0; i < sample.flags._length; ++i) {
        wire.u8(sample.flags._contiguous_buffer[i]);
    }
    wire.begin().u32(sample.names._length);
    for (std::uint32_t i = 0; i < sample.names._length; ++i) {
        wire.text(sample.names._contiguous_buffer[i]);
    }
    wire.end().begin().u32(sample.points._length);
    for (std::uint32_t i = 0; i < sample.points._length; ++i) {
        writePoint(wire, sample.points._contiguous_buffer[i]);
    }
    wire.end().begin().u32(sample.colors._length);
    for (std::uint32_t i = 0; i < sample.colors._length; ++i) {
        wire.u32(sample.colors._contiguous_buffer[i]);
    }
    wire.end().begin().u32(sample.mutables._length);
    for (std::uint32_t i = 0; i < sample.mutables._length; ++i) {
        write(wire, sample.mutables._contiguous_buffer[i]);
    }
    wire.end();
    for (const DDS_Long each : sample.three) {
        wire.u32(static_cast<std::uint32_t>(each));
    }
    wire.u8(sample.switches[0]).u8(sample.switches[1]);
    wire.begin().u32(sample.pair[0]).u32(sample.pair[1]).end();
    wire.begin();
    writePoint(wire, sample.corners[0]);
    writePoint(wire, sample.corners[1]);
    wire.end().end();
}

} // namespace zuv_test
