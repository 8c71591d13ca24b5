// The rules of sequences, for every sequence type of a test program. The program includes this in one of its
// sources, and says there which types it has:
//
//   std::span<const zuv_test::SequenceType> zuv_test::sequenceTypes() { ... ZUV_TEST_SEQUENCE(TSeq, T, code) ... }
//
// Each rule is one test, which tries one type after the other: the types are many, and each takes microseconds.
#ifndef ZUV_TESTS_SUPPORT_SEQUENCE_SUITE_H
#define ZUV_TESTS_SUPPORT_SEQUENCE_SUITE_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"
#include "support/SampleFill.h"

namespace zuv_test
{

// The operations of one sequence type, on a record and on elements that are seen without their type.
struct SequenceType {
    const char *name;
    const DDS_TypeCode *element;
    std::size_t recordSize;
    std::size_t lastOffset; // of the last member of the record
    bool areOffsetsAscending;
    DDS_Boolean (*initialize)(ZUVSequence *);
    DDS_Boolean (*finalize)(ZUVSequence *);
    DDS_Long (*getMaximum)(const ZUVSequence *);
    DDS_Boolean (*setMaximum)(ZUVSequence *, DDS_Long);
    DDS_Boolean (*setAbsoluteMaximum)(ZUVSequence *, DDS_Long);
    DDS_Long (*getLength)(const ZUVSequence *);
    DDS_Boolean (*setLength)(ZUVSequence *, DDS_Long);
    DDS_Boolean (*ensureLength)(ZUVSequence *, DDS_Long, DDS_Long);
    void (*get)(const ZUVSequence *, DDS_Long, void *);
    void *(*getReference)(const ZUVSequence *, DDS_Long);
    void *(*copy)(ZUVSequence *, const ZUVSequence *);
    DDS_Boolean (*copyNoAlloc)(ZUVSequence *, const ZUVSequence *);
    DDS_Boolean (*copyNoAllocI)(ZUVSequence *, const ZUVSequence *);
    DDS_Boolean (*fromArray)(ZUVSequence *, const void *, DDS_Long);
    DDS_Boolean (*toArray)(const ZUVSequence *, void *, DDS_Long);
    DDS_Boolean (*loanContiguous)(ZUVSequence *, void *, DDS_Long, DDS_Long);
    DDS_Boolean (*loanDiscontiguous)(ZUVSequence *, void **, DDS_Long, DDS_Long);
    DDS_Boolean (*unloan)(ZUVSequence *);
    void *(*getContiguousBuffer)(const ZUVSequence *);
    void *(*getContiguousBufferI)(const ZUVSequence *);
    void *(*getDiscontiguousBuffer)(const ZUVSequence *);
    void *(*getDiscontiguousBufferI)(const ZUVSequence *);
    DDS_Boolean (*hasOwnership)(const ZUVSequence *);
    void (*getReadToken)(const ZUVSequence *, void **, void **);
    void (*setReadToken)(ZUVSequence *, void *, void *);
    DDS_Boolean (*checkInvariants)(const ZUVSequence *);
    void (*deleteBuffer)(ZUVSequence *);
    DDS_Boolean (*getElementPointers)(const ZUVSequence *);
    DDS_Boolean (*setElementPointers)(ZUVSequence *, DDS_Boolean);
    void (*getAllocation)(const ZUVSequence *, DDS_TypeAllocationParams_t *);
    DDS_Boolean (*setAllocation)(ZUVSequence *, const DDS_TypeAllocationParams_t *);
    void (*getDeallocation)(const ZUVSequence *, DDS_TypeDeallocationParams_t *);
    DDS_Boolean (*setDeallocation)(ZUVSequence *, const DDS_TypeDeallocationParams_t *);
};

std::span<const SequenceType> sequenceTypes();

// A sequence record of a type, whatever its elements.
template <typename TSeq>
TSeq *as(ZUVSequence *sequence)
{
    return reinterpret_cast<TSeq *>(sequence);
}
template <typename TSeq>
const TSeq *as(const ZUVSequence *sequence)
{
    return reinterpret_cast<const TSeq *>(sequence);
}

template <typename TSeq>
constexpr bool hasAscendingOffsets()
{
    const std::size_t offsets[] = {offsetof(TSeq, _contiguous_buffer),
                                   offsetof(TSeq, _discontiguous_buffer),
                                   offsetof(TSeq, _read_token1),
                                   offsetof(TSeq, _read_token2),
                                   offsetof(TSeq, _maximum),
                                   offsetof(TSeq, _length),
                                   offsetof(TSeq, _sequence_init),
                                   offsetof(TSeq, _owned),
                                   offsetof(TSeq, _elementAllocParams),
                                   offsetof(TSeq, _absolute_maximum),
                                   offsetof(TSeq, _elementDeallocParams)};
    return std::is_sorted(std::begin(offsets), std::end(offsets)) && offsets[0] == 0;
}

#define ZUV_TEST_SEQUENCE(TSeq, T, CODE)                                                           \
    zuv_test::SequenceType                                                                         \
    {                                                                                              \
#TSeq, CODE, sizeof(TSeq), offsetof(TSeq, _elementDeallocParams),                          \
            zuv_test::hasAscendingOffsets<TSeq>(),                                                 \
            [](ZUVSequence *s) { return TSeq##_initialize(zuv_test::as<TSeq>(s)); },               \
            [](ZUVSequence *s) { return TSeq##_finalize(zuv_test::as<TSeq>(s)); },                 \
            [](const ZUVSequence *s) { return TSeq##_get_maximum(zuv_test::as<TSeq>(s)); },        \
            [](ZUVSequence *s, DDS_Long n) {                                                       \
                return TSeq##_set_maximum(zuv_test::as<TSeq>(s), n);                               \
            },                                                                                     \
            [](ZUVSequence *s, DDS_Long n) {                                                       \
                return TSeq##_set_absolute_maximum(zuv_test::as<TSeq>(s), n);                      \
            },                                                                                     \
            [](const ZUVSequence *s) { return TSeq##_get_length(zuv_test::as<TSeq>(s)); },         \
            [](ZUVSequence *s, DDS_Long n) {                                                       \
                return TSeq##_set_length(zuv_test::as<TSeq>(s), n);                                \
            },                                                                                     \
            [](ZUVSequence *s, DDS_Long n, DDS_Long m) {                                           \
                return TSeq##_ensure_length(zuv_test::as<TSeq>(s), n, m);                          \
            },                                                                                     \
            [](const ZUVSequence *s, DDS_Long i, void *to) {                                       \
                const T value = TSeq##_get(zuv_test::as<TSeq>(s), i);                              \
                std::memcpy(to, &value, sizeof(value));                                            \
            },                                                                                     \
            [](const ZUVSequence *s, DDS_Long i) -> void * {                                       \
                return TSeq##_get_reference(zuv_test::as<TSeq>(s), i);                             \
            },                                                                                     \
            [](ZUVSequence *s, const ZUVSequence *from) -> void * {                                \
                return TSeq##_copy(zuv_test::as<TSeq>(s), zuv_test::as<TSeq>(from));               \
            },                                                                                     \
            [](ZUVSequence *s, const ZUVSequence *from) {                                          \
                return TSeq##_copy_no_alloc(zuv_test::as<TSeq>(s), zuv_test::as<TSeq>(from));      \
            },                                                                                     \
            [](ZUVSequence *s, const ZUVSequence *from) {                                          \
                return TSeq##_copy_no_allocI(zuv_test::as<TSeq>(s), zuv_test::as<TSeq>(from));     \
            },                                                                                     \
            [](ZUVSequence *s, const void *array, DDS_Long n) {                                    \
                return TSeq##_from_array(zuv_test::as<TSeq>(s), static_cast<T const *>(array), n); \
            },                                                                                     \
            [](const ZUVSequence *s, void *array, DDS_Long n) {                                    \
                return TSeq##_to_array(zuv_test::as<TSeq>(s), static_cast<T *>(array), n);         \
            },                                                                                     \
            [](ZUVSequence *s, void *buffer, DDS_Long n, DDS_Long m) {                             \
                return TSeq##_loan_contiguous(zuv_test::as<TSeq>(s), static_cast<T *>(buffer), n,  \
                                              m);                                                  \
            },                                                                                     \
            [](ZUVSequence *s, void **buffer, DDS_Long n, DDS_Long m) {                            \
                return TSeq##_loan_discontiguous(zuv_test::as<TSeq>(s),                            \
                                                 reinterpret_cast<T **>(buffer), n, m);            \
            },                                                                                     \
            [](ZUVSequence *s) { return TSeq##_unloan(zuv_test::as<TSeq>(s)); },                   \
            [](const ZUVSequence *s) -> void * {                                                   \
                return TSeq##_get_contiguous_buffer(zuv_test::as<TSeq>(s));                        \
            },                                                                                     \
            [](const ZUVSequence *s) -> void * {                                                   \
                return TSeq##_get_contiguous_bufferI(zuv_test::as<TSeq>(s));                       \
            },                                                                                     \
            [](const ZUVSequence *s) -> void * {                                                   \
                return TSeq##_get_discontiguous_buffer(zuv_test::as<TSeq>(s));                     \
            },                                                                                     \
            [](const ZUVSequence *s) -> void * {                                                   \
                return TSeq##_get_discontiguous_bufferI(zuv_test::as<TSeq>(s));                    \
            },                                                                                     \
            [](const ZUVSequence *s) { return TSeq##_has_ownership(zuv_test::as<TSeq>(s)); },      \
            [](const ZUVSequence *s, void **a, void **b) {                                         \
                TSeq##_get_read_tokenI(zuv_test::as<TSeq>(s), a, b);                               \
            },                                                                                     \
            [](ZUVSequence *s, void *a, void *b) {                                                 \
                TSeq##_set_read_tokenI(zuv_test::as<TSeq>(s), a, b);                               \
            },                                                                                     \
            [](const ZUVSequence *s) { return TSeq##_check_invariantsI(zuv_test::as<TSeq>(s)); },  \
            [](ZUVSequence *s) { TSeq##_delete_bufferI(zuv_test::as<TSeq>(s)); },                  \
            [](const ZUVSequence *s) {                                                             \
                return TSeq##_get_element_pointers_allocation(zuv_test::as<TSeq>(s));              \
            },                                                                                     \
            [](ZUVSequence *s, DDS_Boolean b) {                                                    \
                return TSeq##_set_element_pointers_allocation(zuv_test::as<TSeq>(s), b);           \
            },                                                                                     \
            [](const ZUVSequence *s, DDS_TypeAllocationParams_t *p) {                              \
                TSeq##_get_element_allocation_params(zuv_test::as<TSeq>(s), p);                    \
            },                                                                                     \
            [](ZUVSequence *s, const DDS_TypeAllocationParams_t *p) {                              \
                return TSeq##_set_element_allocation_params(zuv_test::as<TSeq>(s), p);             \
            },                                                                                     \
            [](const ZUVSequence *s, DDS_TypeDeallocationParams_t *p) {                            \
                TSeq##_get_element_deallocation_params(zuv_test::as<TSeq>(s), p);                  \
            },                                                                                     \
            [](ZUVSequence *s, const DDS_TypeDeallocationParams_t *p) {                            \
                return TSeq##_set_element_deallocation_params(zuv_test::as<TSeq>(s), p);           \
            }       \
    }

// Elements outside a sequence: the `n`-th has the values of `n` + 1.
class Elements
{
public:
    Elements(const DDS_TypeCode *type, int length)
        : type_(type), size_(ZUVSample_getSize(type)),
          bytes_(size_ * static_cast<std::size_t>(length))
    {
        for (int i = 0; i < length; ++i) {
            ZUVSample_initializeEx(type_, at(i), DDS_BOOLEAN_TRUE, DDS_BOOLEAN_TRUE);
            fillSample(type_, at(i), i + 1);
            pointers_.push_back(at(i));
        }
    }
    ~Elements()
    {
        for (void *element : pointers_) {
            ZUVSample_finalizeEx(type_, element, DDS_BOOLEAN_TRUE);
        }
    }
    Elements(const Elements &) = delete;
    Elements &operator=(const Elements &) = delete;

    void *at(int index) { return bytes_.data() + size_ * static_cast<std::size_t>(index); }
    void *data() { return bytes_.data(); }
    std::size_t byteCount() const { return size_; }
    // Changeable: an array of pointers to the elements.
    std::vector<void *> &pointers() { return pointers_; }

private:
    const DDS_TypeCode *type_;
    std::size_t size_;
    std::vector<std::byte> bytes_;
    std::vector<void *> pointers_;
};

// One sequence of a type. The heap is balanced when it goes.
class SequenceCase
{
public:
    explicit SequenceCase(const SequenceType &type) : s(type) { heap_.emplace(); }
    ~SequenceCase()
    {
        EXPECT_TRUE(s.finalize(&sequence));
        EXPECT_TRUE(heap_->isBalanced());
    }
    SequenceCase(const SequenceCase &) = delete;
    SequenceCase &operator=(const SequenceCase &) = delete;

    void fill(ZUVSequence &filled, int length)
    {
        ASSERT_TRUE(s.ensureLength(&filled, length, length));
        for (int i = 0; i < length; ++i) {
            fillSample(s.element, s.getReference(&filled, i), i + 1);
        }
    }

    // Whether an element has the values that `value` decides.
    bool holds(const void *element, int value)
    {
        Elements expected(s.element, 1);
        fillSample(s.element, expected.at(0), value);
        return ZUVSample_equals(s.element, element, expected.at(0)) != 0;
    }

    bool isFilled(const ZUVSequence &filled, int length)
    {
        bool isRight = s.getLength(&filled) == length && s.checkInvariants(&filled);
        std::vector<std::byte> value(ZUVSample_getSize(s.element));
        for (int i = 0; i < length; ++i) {
            s.get(&filled, i, value.data());
            isRight =
                isRight && holds(s.getReference(&filled, i), i + 1) && holds(value.data(), i + 1);
        }
        return isRight;
    }

    const SequenceType &s;
    ZUVSequence sequence = DDS_SEQUENCE_INITIALIZER;
    LogCapture log;

private:
    std::optional<HeapCheck> heap_;
};

inline void forEverySequence(const std::function<void(SequenceCase &)> &rule)
{
    ASSERT_FALSE(sequenceTypes().empty());
    for (const SequenceType &type : sequenceTypes()) {
        SCOPED_TRACE(type.name);
        ASSERT_NE(ZUVType_getSampleAccessInfo(type.element), nullptr); // its program stays
        SequenceCase sequence(type);
        rule(sequence);
    }
}

} // namespace zuv_test

#define ZUV_SEQUENCE_RULE(NAME)                                                                    \
    static void NAME##Rule(zuv_test::SequenceCase &c);                                             \
    TEST(EverySequence, NAME)                                                                      \
    {                                                                                              \
        zuv_test::forEverySequence(NAME##Rule);                                                    \
    }                                                                                              \
    static void NAME##Rule([[maybe_unused]] zuv_test::SequenceCase &c)

ZUV_SEQUENCE_RULE(HasTheMembersOfItsLayoutInOrder)
{
    EXPECT_TRUE(c.s.areOffsetsAscending);
    EXPECT_EQ(c.s.recordSize, sizeof(ZUVSequence));
    EXPECT_EQ(c.s.lastOffset, offsetof(ZUVSequence, _elementDeallocParams));
}

ZUV_SEQUENCE_RULE(StartsEmptyByItsStaticInitializer)
{
    EXPECT_EQ(c.sequence._sequence_init, 29508);
    EXPECT_TRUE(c.sequence._owned);
    EXPECT_EQ(c.sequence._absolute_maximum, 0x7fffffffu);
    EXPECT_EQ(c.s.getLength(&c.sequence), 0);
    EXPECT_EQ(c.s.getMaximum(&c.sequence), 0);
    EXPECT_TRUE(c.s.hasOwnership(&c.sequence));
    EXPECT_TRUE(c.s.checkInvariants(&c.sequence));
    EXPECT_EQ(c.s.getContiguousBuffer(&c.sequence), nullptr);
}

ZUV_SEQUENCE_RULE(InitializeIgnoresWhatTheMemoryHeld)
{
    ZUVSequence other;
    std::memset(&other, 0xa5, sizeof(other));
    EXPECT_TRUE(c.s.initialize(&other));
    EXPECT_TRUE(c.s.checkInvariants(&other));
    EXPECT_EQ(c.s.getLength(&other), 0);
    EXPECT_FALSE(c.s.initialize(nullptr));
}

ZUV_SEQUENCE_RULE(TakesARecordOfZerosForAnEmptySequence)
{
    ZUVSequence zeros;
    std::memset(&zeros, 0, sizeof(zeros));
    EXPECT_EQ(c.s.getLength(&zeros), 0);
    EXPECT_EQ(c.s.getMaximum(&zeros), 0);
    EXPECT_TRUE(c.s.hasOwnership(&zeros));
    EXPECT_EQ(c.s.getContiguousBuffer(&zeros), nullptr);
    ASSERT_NO_FATAL_FAILURE(c.fill(zeros, 2));
    EXPECT_TRUE(c.isFilled(zeros, 2));
    EXPECT_TRUE(c.s.finalize(&zeros));
}

ZUV_SEQUENCE_RULE(RefusesNullAsAPrecondition)
{
    void *token = nullptr;
    void *element = nullptr;
    DDS_TypeAllocationParams_t allocation = {};
    DDS_TypeDeallocationParams_t deallocation = {};
    std::vector<std::byte> value(ZUVSample_getSize(c.s.element), std::byte{1});
    const std::function<bool()> refusals[] = {
        [&] { return !c.s.initialize(nullptr); },
        [&] { return !c.s.finalize(nullptr); },
        [&] { return c.s.getMaximum(nullptr) == 0; },
        [&] { return !c.s.setMaximum(nullptr, 1); },
        [&] { return !c.s.setAbsoluteMaximum(nullptr, 1); },
        [&] { return c.s.getLength(nullptr) == 0; },
        [&] { return !c.s.setLength(nullptr, 1); },
        [&] { return !c.s.ensureLength(nullptr, 1, 1); },
        [&] { return c.s.getReference(nullptr, 0) == nullptr; },
        [&] { return c.s.copy(nullptr, &c.sequence) == nullptr; },
        [&] { return c.s.copy(&c.sequence, nullptr) == nullptr; },
        [&] { return !c.s.copyNoAlloc(nullptr, &c.sequence); },
        [&] { return !c.s.copyNoAllocI(&c.sequence, nullptr); },
        [&] { return !c.s.fromArray(nullptr, value.data(), 0); },
        [&] { return !c.s.toArray(nullptr, value.data(), 0); },
        [&] { return !c.s.loanContiguous(nullptr, value.data(), 1, 1); },
        [&] { return !c.s.loanDiscontiguous(nullptr, &element, 1, 1); },
        [&] { return !c.s.unloan(nullptr); },
        [&] { return c.s.getContiguousBuffer(nullptr) == nullptr; },
        [&] { return c.s.getContiguousBufferI(nullptr) == nullptr; },
        [&] { return c.s.getDiscontiguousBuffer(nullptr) == nullptr; },
        [&] { return c.s.getDiscontiguousBufferI(nullptr) == nullptr; },
        [&] { return !c.s.hasOwnership(nullptr); },
        [&] { return c.s.getReadToken(nullptr, &token, &token), token == nullptr; },
        [&] { return c.s.setReadToken(nullptr, nullptr, nullptr), true; },
        [&] { return !c.s.checkInvariants(nullptr); },
        [&] { return c.s.deleteBuffer(nullptr), true; },
        [&] { return !c.s.setElementPointers(nullptr, DDS_BOOLEAN_TRUE); },
        [&] { return !c.s.setAllocation(nullptr, &allocation); },
        [&] { return !c.s.setDeallocation(nullptr, &deallocation); },
    };
    for (std::size_t i = 0; i < std::size(refusals); ++i) {
        c.log.clear();
        EXPECT_TRUE(refusals[i]()) << i;
        ASSERT_FALSE(c.log.lines().empty()) << i;
        EXPECT_EQ(c.log.lines()[0].message, &ZUV_LOG_PRECONDITION_FAILURE_s) << i;
    }
}

ZUV_SEQUENCE_RULE(EnsureLengthWithinTheMaximumJustSetsTheLength)
{
    ASSERT_NO_FATAL_FAILURE(c.fill(c.sequence, 5));
    const void *buffer = c.s.getContiguousBuffer(&c.sequence);
    EXPECT_TRUE(c.s.ensureLength(&c.sequence, 2, 100));
    EXPECT_EQ(c.s.getLength(&c.sequence), 2);
    EXPECT_EQ(c.s.getMaximum(&c.sequence), 5);
    EXPECT_EQ(c.s.getContiguousBuffer(&c.sequence), buffer);
    EXPECT_TRUE(c.s.setLength(&c.sequence, 5));
    EXPECT_TRUE(c.isFilled(c.sequence, 5)); // the elements beyond the length were kept
}

ZUV_SEQUENCE_RULE(EnsureLengthBeyondTheMaximumGrowsToTheMaximumAsked)
{
    ASSERT_NO_FATAL_FAILURE(c.fill(c.sequence, 3));
    EXPECT_TRUE(c.s.ensureLength(&c.sequence, 4, 10));
    EXPECT_EQ(c.s.getMaximum(&c.sequence), 10);
    EXPECT_EQ(c.s.getLength(&c.sequence), 4);
    EXPECT_TRUE(c.s.setLength(&c.sequence, 3));
    EXPECT_TRUE(c.isFilled(c.sequence, 3));
}

ZUV_SEQUENCE_RULE(EnsureLengthAboveItsOwnMaximumIsRefused)
{
    EXPECT_FALSE(c.s.ensureLength(&c.sequence, 5, 4));
    EXPECT_EQ(c.s.getMaximum(&c.sequence), 0);
    const auto lines = c.log.lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].message, &DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd);
}

ZUV_SEQUENCE_RULE(RefusesNegativeNumbers)
{
    EXPECT_FALSE(c.s.ensureLength(&c.sequence, -1, 4));
    EXPECT_FALSE(c.s.ensureLength(&c.sequence, 0, -1));
    EXPECT_FALSE(c.s.setLength(&c.sequence, -1));
    EXPECT_FALSE(c.s.setMaximum(&c.sequence, -1));
    EXPECT_FALSE(c.s.setAbsoluteMaximum(&c.sequence, -1));
    EXPECT_TRUE(c.s.checkInvariants(&c.sequence));
}

ZUV_SEQUENCE_RULE(SetLengthGrowsAnOwnedSequenceToJustThatLength)
{
    EXPECT_TRUE(c.s.setLength(&c.sequence, 7));
    EXPECT_EQ(c.s.getMaximum(&c.sequence), 7);
    EXPECT_EQ(c.s.getLength(&c.sequence), 7);
}

ZUV_SEQUENCE_RULE(SetMaximumKeepsElementsAndCutsTheLength)
{
    ASSERT_NO_FATAL_FAILURE(c.fill(c.sequence, 6));
    EXPECT_TRUE(c.s.setMaximum(&c.sequence, 9));
    EXPECT_TRUE(c.isFilled(c.sequence, 6));
    EXPECT_TRUE(c.s.setMaximum(&c.sequence, 4));
    EXPECT_EQ(c.s.getMaximum(&c.sequence), 4);
    EXPECT_TRUE(c.isFilled(c.sequence, 4));
    EXPECT_TRUE(c.s.setMaximum(&c.sequence, 0));
    EXPECT_EQ(c.s.getContiguousBuffer(&c.sequence), nullptr);
    EXPECT_TRUE(c.s.checkInvariants(&c.sequence));
}

ZUV_SEQUENCE_RULE(NeverGrowsBeyondItsAbsoluteMaximum)
{
    EXPECT_TRUE(c.s.setAbsoluteMaximum(&c.sequence, 4));
    EXPECT_FALSE(c.s.setMaximum(&c.sequence, 5));
    EXPECT_FALSE(c.s.setLength(&c.sequence, 5));
    EXPECT_TRUE(c.s.setLength(&c.sequence, 4));
    EXPECT_FALSE(c.s.setAbsoluteMaximum(&c.sequence, 3)); // below what exists
    EXPECT_TRUE(c.s.checkInvariants(&c.sequence));
}

ZUV_SEQUENCE_RULE(GivesZerosAndNoReferenceOutsideTheLength)
{
    ASSERT_NO_FATAL_FAILURE(c.fill(c.sequence, 2));
    c.s.setLength(&c.sequence, 1);
    EXPECT_EQ(c.s.getReference(&c.sequence, 1), nullptr);
    EXPECT_EQ(c.s.getReference(&c.sequence, -1), nullptr);
    std::vector<std::byte> value(ZUVSample_getSize(c.s.element), std::byte{1});
    c.s.get(&c.sequence, 1, value.data());
    EXPECT_EQ(value, std::vector<std::byte>(value.size()));
    EXPECT_EQ(c.log.lines().size(), 3u);
}

ZUV_SEQUENCE_RULE(CopiesDeepAndGrows)
{
    ZUVSequence copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_NO_FATAL_FAILURE(c.fill(c.sequence, 5));
    EXPECT_EQ(c.s.copy(&copy, &c.sequence), &copy);
    zuv_test::fillSample(c.s.element, c.s.getReference(&c.sequence, 0), 78);
    EXPECT_TRUE(c.isFilled(copy, 5));
    EXPECT_TRUE(c.s.finalize(&copy));
}

ZUV_SEQUENCE_RULE(RepeatedCopiesAllocateNothing)
{
    ZUVSequence copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_NO_FATAL_FAILURE(c.fill(c.sequence, 5));
    ASSERT_NE(c.s.copy(&copy, &c.sequence), nullptr);
    const zuv_test::HeapCheck second;
    ASSERT_NE(c.s.copy(&copy, &c.sequence), nullptr);
    EXPECT_EQ(second.allocations(), 0u);
    c.s.setLength(&c.sequence, 2);
    ASSERT_NE(c.s.copy(&copy, &c.sequence), nullptr);
    EXPECT_EQ(second.allocations(), 0u);
    EXPECT_TRUE(c.isFilled(copy, 2));
    EXPECT_EQ(c.s.getMaximum(&copy), 5);
    EXPECT_TRUE(c.s.finalize(&copy));
}

ZUV_SEQUENCE_RULE(CopyOntoItselfChangesNothing)
{
    ASSERT_NO_FATAL_FAILURE(c.fill(c.sequence, 3));
    EXPECT_EQ(c.s.copy(&c.sequence, &c.sequence), &c.sequence);
    EXPECT_TRUE(c.isFilled(c.sequence, 3));
}

ZUV_SEQUENCE_RULE(CopyNoAllocNeedsRoom)
{
    ZUVSequence copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_NO_FATAL_FAILURE(c.fill(c.sequence, 3));
    EXPECT_FALSE(c.s.copyNoAlloc(&copy, &c.sequence));
    EXPECT_FALSE(c.s.copyNoAllocI(&copy, &c.sequence));
    for (const auto &line : c.log.lines()) {
        EXPECT_EQ(line.message, &DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd);
    }
    EXPECT_EQ(c.s.getMaximum(&copy), 0);
    ASSERT_TRUE(c.s.setMaximum(&copy, 3));
    EXPECT_TRUE(c.s.copyNoAlloc(&copy, &c.sequence));
    EXPECT_TRUE(c.s.copyNoAllocI(&copy, &c.sequence));
    EXPECT_TRUE(c.isFilled(copy, 3));
    EXPECT_TRUE(c.s.finalize(&copy));
}

ZUV_SEQUENCE_RULE(GoesFromAnArrayAndBack)
{
    zuv_test::Elements elements(c.s.element, 4);
    EXPECT_TRUE(c.s.fromArray(&c.sequence, elements.data(), 4));
    EXPECT_TRUE(c.isFilled(c.sequence, 4));
    for (int i = 0; i < 4; ++i) {
        zuv_test::fillSample(c.s.element, elements.at(i), 10);
    }
    EXPECT_FALSE(c.s.toArray(&c.sequence, elements.data(), 5));
    EXPECT_FALSE(c.s.toArray(&c.sequence, elements.data(), -1));
    EXPECT_TRUE(c.s.toArray(&c.sequence, elements.data(), 3));
    EXPECT_TRUE(c.holds(elements.at(0), 1) && c.holds(elements.at(2), 3) &&
                c.holds(elements.at(3), 10));
    EXPECT_TRUE(c.s.fromArray(&c.sequence, elements.data(), 0));
    EXPECT_EQ(c.s.getLength(&c.sequence), 0);
    EXPECT_FALSE(c.s.fromArray(&c.sequence, nullptr, 1));
}

ZUV_SEQUENCE_RULE(RefusesToChangeAContiguousLoan)
{
    zuv_test::Elements elements(c.s.element, 4);
    ASSERT_TRUE(c.s.loanContiguous(&c.sequence, elements.data(), 2, 4));
    EXPECT_FALSE(c.s.hasOwnership(&c.sequence));
    EXPECT_TRUE(c.isFilled(c.sequence, 2));
    EXPECT_TRUE(c.s.setLength(&c.sequence, 4)); // within the loan
    EXPECT_TRUE(c.isFilled(c.sequence, 4));
    c.log.clear();
    EXPECT_FALSE(c.s.setMaximum(&c.sequence, 8));
    EXPECT_FALSE(c.s.setMaximum(&c.sequence, 2));
    EXPECT_FALSE(c.s.ensureLength(&c.sequence, 5, 8));
    EXPECT_FALSE(c.s.setLength(&c.sequence, 5));
    EXPECT_FALSE(c.s.finalize(&c.sequence));
    for (const auto &line : c.log.lines()) {
        EXPECT_EQ(line.message, &DDS_LOG_SEQUENCE_NOT_OWNER);
    }
    EXPECT_EQ(c.log.lines().size(), 5u);
    EXPECT_TRUE(c.s.unloan(&c.sequence));
    EXPECT_TRUE(c.s.hasOwnership(&c.sequence));
    EXPECT_EQ(c.s.getMaximum(&c.sequence), 0);
    EXPECT_EQ(c.s.getContiguousBuffer(&c.sequence), nullptr);
}

ZUV_SEQUENCE_RULE(ReadsADiscontiguousLoan)
{
    zuv_test::Elements elements(c.s.element, 3);
    void *pointers[] = {elements.at(2), elements.at(0), elements.at(1)};
    ASSERT_TRUE(c.s.loanDiscontiguous(&c.sequence, pointers, 3, 3));
    EXPECT_FALSE(c.s.hasOwnership(&c.sequence));
    EXPECT_EQ(c.s.getContiguousBuffer(&c.sequence), nullptr);
    EXPECT_EQ(c.s.getContiguousBufferI(&c.sequence), nullptr);
    EXPECT_EQ(c.s.getDiscontiguousBuffer(&c.sequence), pointers);
    EXPECT_EQ(c.s.getDiscontiguousBufferI(&c.sequence), pointers);
    EXPECT_TRUE(c.s.checkInvariants(&c.sequence));
    EXPECT_EQ(c.s.getReference(&c.sequence, 0), elements.at(2));
    EXPECT_TRUE(c.holds(c.s.getReference(&c.sequence, 1), 1));
    EXPECT_FALSE(c.s.setMaximum(&c.sequence, 4));

    ZUVSequence copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_NE(c.s.copy(&copy, &c.sequence), nullptr);
    EXPECT_TRUE(c.holds(c.s.getReference(&copy, 0), 3) && c.holds(c.s.getReference(&copy, 1), 1) &&
                c.holds(c.s.getReference(&copy, 2), 2));
    zuv_test::fillSample(c.s.element, c.s.getReference(&copy, 0), 6);
    ASSERT_NE(c.s.copy(&c.sequence, &copy), nullptr); // into the lent elements
    EXPECT_TRUE(c.holds(elements.at(2), 6));
    EXPECT_TRUE(c.s.finalize(&copy));
    EXPECT_TRUE(c.s.unloan(&c.sequence));
    EXPECT_EQ(c.s.getDiscontiguousBuffer(&c.sequence), nullptr);
}

ZUV_SEQUENCE_RULE(TakesALoanOnlyWhenItHasNoElements)
{
    zuv_test::Elements elements(c.s.element, 2);
    void **pointers = elements.pointers().data();
    ASSERT_NO_FATAL_FAILURE(c.fill(c.sequence, 1));
    EXPECT_FALSE(c.s.loanContiguous(&c.sequence, elements.data(), 1, 2));
    EXPECT_FALSE(c.s.loanDiscontiguous(&c.sequence, pointers, 1, 2));
    EXPECT_FALSE(c.s.unloan(&c.sequence)); // it owns what it has
    EXPECT_TRUE(c.isFilled(c.sequence, 1));
    ASSERT_TRUE(c.s.setMaximum(&c.sequence, 0));
    EXPECT_TRUE(c.s.unloan(&c.sequence)); // nothing to give back
    EXPECT_FALSE(c.s.loanContiguous(&c.sequence, elements.data(), 3, 2));
    EXPECT_FALSE(c.s.loanContiguous(&c.sequence, elements.data(), -1, 2));
    EXPECT_FALSE(c.s.loanContiguous(&c.sequence, nullptr, 0, 2));
    ASSERT_TRUE(c.s.loanContiguous(&c.sequence, elements.data(), 1, 2));
    EXPECT_FALSE(c.s.loanContiguous(&c.sequence, elements.data(), 1, 2));
    EXPECT_TRUE(c.s.unloan(&c.sequence));
}

ZUV_SEQUENCE_RULE(KeepsTheTokensOfItsReaderUntilTheLoanEnds)
{
    zuv_test::Elements elements(c.s.element, 1);
    void *token1 = &elements;
    void *token2 = nullptr;
    ASSERT_TRUE(c.s.loanContiguous(&c.sequence, elements.data(), 1, 1));
    c.s.setReadToken(&c.sequence, &c.sequence, &elements);
    c.s.getReadToken(&c.sequence, &token1, &token2);
    EXPECT_EQ(token1, &c.sequence);
    EXPECT_EQ(token2, &elements);
    ASSERT_TRUE(c.s.unloan(&c.sequence));
    c.s.getReadToken(&c.sequence, &token1, &token2);
    EXPECT_EQ(token1, nullptr);
    EXPECT_EQ(token2, nullptr);
}

ZUV_SEQUENCE_RULE(FindsAnInconsistentRecord)
{
    ASSERT_NO_FATAL_FAILURE(c.fill(c.sequence, 2));
    ZUVSequence wrong = c.sequence;
    wrong._length = 3;
    EXPECT_FALSE(c.s.checkInvariants(&wrong));
    wrong = c.sequence;
    wrong._absolute_maximum = 1;
    EXPECT_FALSE(c.s.checkInvariants(&wrong));
    wrong = c.sequence;
    wrong._contiguous_buffer = nullptr;
    EXPECT_FALSE(c.s.checkInvariants(&wrong));
    wrong = c.sequence;
    wrong._sequence_init = 0;
    EXPECT_FALSE(c.s.checkInvariants(&wrong));
}

ZUV_SEQUENCE_RULE(DeletesItsOwnBufferAlone)
{
    ASSERT_NO_FATAL_FAILURE(c.fill(c.sequence, 2));
    c.s.deleteBuffer(&c.sequence);
    EXPECT_EQ(c.s.getMaximum(&c.sequence), 0);
    zuv_test::Elements elements(c.s.element, 1);
    ASSERT_TRUE(c.s.loanContiguous(&c.sequence, elements.data(), 1, 1));
    c.s.deleteBuffer(&c.sequence);
    EXPECT_TRUE(c.isFilled(c.sequence, 1));
    EXPECT_TRUE(c.s.unloan(&c.sequence));
}

ZUV_SEQUENCE_RULE(ChangesTheParametersOfElementsOnlyWhileThereAreNone)
{
    DDS_TypeAllocationParams_t allocation = {};
    DDS_TypeDeallocationParams_t deallocation = {};
    EXPECT_TRUE(c.s.getElementPointers(&c.sequence));
    EXPECT_TRUE(c.s.setElementPointers(&c.sequence, DDS_BOOLEAN_FALSE));
    c.s.getAllocation(&c.sequence, &allocation);
    EXPECT_FALSE(allocation.allocate_pointers);
    EXPECT_FALSE(allocation.allocate_optional_members);
    EXPECT_TRUE(allocation.allocate_memory);
    allocation.allocate_optional_members = DDS_BOOLEAN_TRUE;
    EXPECT_TRUE(c.s.setAllocation(&c.sequence, &allocation));
    c.s.getDeallocation(&c.sequence, &deallocation);
    EXPECT_TRUE(deallocation.delete_pointers && deallocation.delete_optional_members);
    deallocation.delete_pointers = DDS_BOOLEAN_FALSE;
    EXPECT_TRUE(c.s.setDeallocation(&c.sequence, &deallocation));
    EXPECT_FALSE(c.s.setAllocation(&c.sequence, nullptr));
    EXPECT_FALSE(c.s.setDeallocation(&c.sequence, nullptr));

    ASSERT_TRUE(c.s.setLength(&c.sequence, 1));
    EXPECT_FALSE(c.s.setElementPointers(&c.sequence, DDS_BOOLEAN_TRUE));
    EXPECT_FALSE(c.s.setAllocation(&c.sequence, &allocation));
    EXPECT_FALSE(c.s.setDeallocation(&c.sequence, &deallocation));
    c.s.getAllocation(&c.sequence, &allocation);
    EXPECT_TRUE(allocation.allocate_optional_members);
}

ZUV_SEQUENCE_RULE(SurvivesEveryFailedAllocation)
{
    ZUVSequence copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_NO_FATAL_FAILURE(c.fill(c.sequence, 4));
    for (const bool isOnward : {false, true}) {
        for (std::uint32_t count = 1;; ++count) {
            ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, isOnward);
            const bool isGrown = c.s.ensureLength(&copy, 2, 3);
            const bool isCopied = c.s.copy(&copy, &c.sequence) != nullptr;
            ZUVOsapiFault_disarm();
            const bool isInjected = ZUVOsapiFault_getInjectedCount() > 0;
            EXPECT_NE(isGrown && isCopied, isInjected);
            EXPECT_TRUE(c.s.checkInvariants(&copy));
            EXPECT_NE(c.s.copy(&copy, &c.sequence), nullptr);
            EXPECT_TRUE(c.isFilled(copy, 4));
            EXPECT_TRUE(c.s.finalize(&copy));
            if (!isInjected) {
                break;
            }
            EXPECT_FALSE(c.log.lines().empty());
            c.log.clear();
        }
    }
}

#endif
