// One sequence type with its operations under names of their own, and what the rules of sequences need beside it:
// elements outside a sequence, and a case that watches the heap.
#ifndef ZUV_TESTS_SUPPORT_SEQUENCE_TYPE_H
#define ZUV_TESTS_SUPPORT_SEQUENCE_TYPE_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <span>
#include <vector>

#include <gtest/gtest.h>

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

} // namespace zuv_test

#endif
