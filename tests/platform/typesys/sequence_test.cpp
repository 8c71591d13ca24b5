#include "platform/typesys/Sequence.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "SequenceTraits.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using namespace zuv_test;

// Every operation on every kind of element. The heap is balanced after each test.
template <typename Traits>
class Sequence : public testing::Test
{
protected:
    using S = Traits;
    using TSeq = typename Traits::Sequence;
    using T = typename Traits::Element;

    // Compiles the elements' program, which stays, before the heap is watched.
    Sequence()
    {
        TSeq warm = DDS_SEQUENCE_INITIALIZER;
        S::setMaximum(&warm, 1);
        S::finalize(&warm);
        heap_.emplace();
    }

    void TearDown() override
    {
        EXPECT_TRUE(S::finalize(&sequence_));
        EXPECT_TRUE(heap_->isBalanced());
    }

    void fill(TSeq &sequence, int length)
    {
        ASSERT_TRUE(S::ensureLength(&sequence, length, length));
        for (int i = 0; i < length; ++i) {
            setElement(*S::getReference(&sequence, i), i + 1);
        }
    }

    bool isFilled(const TSeq &sequence, int length)
    {
        bool isRight = S::getLength(&sequence) == length && S::checkInvariants(&sequence);
        for (int i = 0; i < length; ++i) {
            isRight = isRight && holds(*S::getReference(&sequence, i), i + 1) &&
                      holds(S::get(&sequence, i), i + 1);
        }
        return isRight;
    }

    // Elements of the test's own.
    std::vector<T> makeElements(int length)
    {
        std::vector<T> elements(static_cast<std::size_t>(length));
        for (int i = 0; i < length; ++i) {
            initializeElement(elements[static_cast<std::size_t>(i)]);
            setElement(elements[static_cast<std::size_t>(i)], i + 1);
        }
        return elements;
    }

    static void release(std::vector<T> &elements)
    {
        for (T &element : elements) {
            finalizeElement(element);
        }
    }

    TSeq sequence_ = DDS_SEQUENCE_INITIALIZER;
    std::optional<HeapCheck> heap_;
    LogCapture log_;
};

using AllSequences =
    testing::Types<DDS_BooleanSeqTraits, DDS_OctetSeqTraits, DDS_LongSeqTraits,
                   DDS_UnsignedLongSeqTraits, DDS_StringSeqTraits, TestNameSeqTraits,
                   TestPointSeqTraits, TestColorSeqTraits, TestMutableSeqTraits>;
TYPED_TEST_SUITE(Sequence, AllSequences);

} // namespace

TYPED_TEST(Sequence, HasTheMembersOfItsLayoutInOrder)
{
    using Record = typename TypeParam::Sequence;
    const std::size_t offsets[] = {offsetof(Record, _contiguous_buffer),
                                   offsetof(Record, _discontiguous_buffer),
                                   offsetof(Record, _read_token1),
                                   offsetof(Record, _read_token2),
                                   offsetof(Record, _maximum),
                                   offsetof(Record, _length),
                                   offsetof(Record, _sequence_init),
                                   offsetof(Record, _owned),
                                   offsetof(Record, _elementAllocParams),
                                   offsetof(Record, _absolute_maximum),
                                   offsetof(Record, _elementDeallocParams)};
    EXPECT_TRUE(std::is_sorted(std::begin(offsets), std::end(offsets)));
    EXPECT_EQ(sizeof(Record), sizeof(ZUVSequence));
    EXPECT_EQ(offsetof(Record, _elementDeallocParams),
              offsetof(ZUVSequence, _elementDeallocParams));
}

TYPED_TEST(Sequence, StartsEmptyByItsStaticInitializer)
{
    EXPECT_EQ(this->sequence_._sequence_init, 29508);
    EXPECT_TRUE(this->sequence_._owned);
    EXPECT_EQ(this->sequence_._absolute_maximum, 0x7fffffffu);
    EXPECT_EQ(TypeParam::getLength(&this->sequence_), 0);
    EXPECT_EQ(TypeParam::getMaximum(&this->sequence_), 0);
    EXPECT_TRUE(TypeParam::hasOwnership(&this->sequence_));
    EXPECT_TRUE(TypeParam::checkInvariants(&this->sequence_));
    EXPECT_EQ(TypeParam::getContiguousBuffer(&this->sequence_), nullptr);
}

TYPED_TEST(Sequence, InitializeIgnoresWhatTheMemoryHeld)
{
    typename TypeParam::Sequence sequence;
    std::memset(&sequence, 0xa5, sizeof(sequence));
    EXPECT_TRUE(TypeParam::initialize(&sequence));
    EXPECT_TRUE(TypeParam::checkInvariants(&sequence));
    EXPECT_EQ(TypeParam::getLength(&sequence), 0);
    EXPECT_FALSE(TypeParam::initialize(nullptr));
}

TYPED_TEST(Sequence, TakesARecordOfZerosForAnEmptySequence)
{
    typename TypeParam::Sequence zeros;
    std::memset(&zeros, 0, sizeof(zeros));
    EXPECT_EQ(TypeParam::getLength(&zeros), 0);
    EXPECT_EQ(TypeParam::getMaximum(&zeros), 0);
    EXPECT_TRUE(TypeParam::hasOwnership(&zeros));
    EXPECT_EQ(TypeParam::getContiguousBuffer(&zeros), nullptr);
    ASSERT_NO_FATAL_FAILURE(this->fill(zeros, 2));
    EXPECT_TRUE(this->isFilled(zeros, 2));
    EXPECT_TRUE(TypeParam::finalize(&zeros));
}

TYPED_TEST(Sequence, EnsureLengthWithinTheMaximumJustSetsTheLength)
{
    ASSERT_NO_FATAL_FAILURE(this->fill(this->sequence_, 5));
    const auto *buffer = TypeParam::getContiguousBuffer(&this->sequence_);
    EXPECT_TRUE(TypeParam::ensureLength(&this->sequence_, 2, 100));
    EXPECT_EQ(TypeParam::getLength(&this->sequence_), 2);
    EXPECT_EQ(TypeParam::getMaximum(&this->sequence_), 5);
    EXPECT_EQ(TypeParam::getContiguousBuffer(&this->sequence_), buffer);
    EXPECT_TRUE(TypeParam::setLength(&this->sequence_, 5));
    EXPECT_TRUE(this->isFilled(this->sequence_, 5)); // the elements beyond the length were kept
}

TYPED_TEST(Sequence, EnsureLengthBeyondTheMaximumGrowsToTheMaximumAsked)
{
    ASSERT_NO_FATAL_FAILURE(this->fill(this->sequence_, 3));
    EXPECT_TRUE(TypeParam::ensureLength(&this->sequence_, 4, 10));
    EXPECT_EQ(TypeParam::getMaximum(&this->sequence_), 10);
    EXPECT_EQ(TypeParam::getLength(&this->sequence_), 4);
    EXPECT_TRUE(TypeParam::setLength(&this->sequence_, 3));
    EXPECT_TRUE(this->isFilled(this->sequence_, 3));
}

TYPED_TEST(Sequence, EnsureLengthAboveItsOwnMaximumIsRefused)
{
    EXPECT_FALSE(TypeParam::ensureLength(&this->sequence_, 5, 4));
    EXPECT_EQ(TypeParam::getMaximum(&this->sequence_), 0);
    const auto lines = this->log_.lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].message, &DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd);
}

TYPED_TEST(Sequence, RefusesNegativeNumbers)
{
    EXPECT_FALSE(TypeParam::ensureLength(&this->sequence_, -1, 4));
    EXPECT_FALSE(TypeParam::ensureLength(&this->sequence_, 0, -1));
    EXPECT_FALSE(TypeParam::setLength(&this->sequence_, -1));
    EXPECT_FALSE(TypeParam::setMaximum(&this->sequence_, -1));
    EXPECT_FALSE(TypeParam::setAbsoluteMaximum(&this->sequence_, -1));
    EXPECT_TRUE(TypeParam::checkInvariants(&this->sequence_));
}

TYPED_TEST(Sequence, SetLengthGrowsAnOwnedSequenceToJustThatLength)
{
    EXPECT_TRUE(TypeParam::setLength(&this->sequence_, 7));
    EXPECT_EQ(TypeParam::getMaximum(&this->sequence_), 7);
    EXPECT_EQ(TypeParam::getLength(&this->sequence_), 7);
}

TYPED_TEST(Sequence, SetMaximumKeepsElementsAndCutsTheLength)
{
    ASSERT_NO_FATAL_FAILURE(this->fill(this->sequence_, 6));
    EXPECT_TRUE(TypeParam::setMaximum(&this->sequence_, 9));
    EXPECT_TRUE(this->isFilled(this->sequence_, 6));
    EXPECT_TRUE(TypeParam::setMaximum(&this->sequence_, 4));
    EXPECT_EQ(TypeParam::getMaximum(&this->sequence_), 4);
    EXPECT_TRUE(this->isFilled(this->sequence_, 4));
    EXPECT_TRUE(TypeParam::setMaximum(&this->sequence_, 0));
    EXPECT_EQ(TypeParam::getContiguousBuffer(&this->sequence_), nullptr);
    EXPECT_TRUE(TypeParam::checkInvariants(&this->sequence_));
}

TYPED_TEST(Sequence, NeverGrowsBeyondItsAbsoluteMaximum)
{
    EXPECT_TRUE(TypeParam::setAbsoluteMaximum(&this->sequence_, 4));
    EXPECT_FALSE(TypeParam::setMaximum(&this->sequence_, 5));
    EXPECT_FALSE(TypeParam::setLength(&this->sequence_, 5));
    EXPECT_TRUE(TypeParam::setLength(&this->sequence_, 4));
    EXPECT_FALSE(TypeParam::setAbsoluteMaximum(&this->sequence_, 3)); // below what exists
    EXPECT_TRUE(TypeParam::checkInvariants(&this->sequence_));
}

TYPED_TEST(Sequence, GivesZerosAndNoReferenceOutsideTheLength)
{
    ASSERT_NO_FATAL_FAILURE(this->fill(this->sequence_, 2));
    TypeParam::setLength(&this->sequence_, 1);
    EXPECT_EQ(TypeParam::getReference(&this->sequence_, 1), nullptr);
    EXPECT_EQ(TypeParam::getReference(&this->sequence_, -1), nullptr);
    const auto value = TypeParam::get(&this->sequence_, 1);
    const typename TypeParam::Element zero{};
    EXPECT_EQ(std::memcmp(&value, &zero, sizeof(value)), 0);
    EXPECT_EQ(this->log_.lines().size(), 3u);
}

TYPED_TEST(Sequence, CopiesDeepAndGrows)
{
    typename TypeParam::Sequence copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_NO_FATAL_FAILURE(this->fill(this->sequence_, 5));
    EXPECT_EQ(TypeParam::copy(&copy, &this->sequence_), &copy);
    setElement(*TypeParam::getReference(&this->sequence_, 0), 77);
    EXPECT_TRUE(this->isFilled(copy, 5));
    EXPECT_TRUE(TypeParam::finalize(&copy));
}

TYPED_TEST(Sequence, RepeatedCopiesAllocateNothing)
{
    typename TypeParam::Sequence copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_NO_FATAL_FAILURE(this->fill(this->sequence_, 5));
    ASSERT_NE(TypeParam::copy(&copy, &this->sequence_), nullptr);
    const HeapCheck second;
    ASSERT_NE(TypeParam::copy(&copy, &this->sequence_), nullptr);
    EXPECT_EQ(second.allocations(), 0u);
    TypeParam::setLength(&this->sequence_, 2);
    ASSERT_NE(TypeParam::copy(&copy, &this->sequence_), nullptr);
    EXPECT_EQ(second.allocations(), 0u);
    EXPECT_TRUE(this->isFilled(copy, 2));
    EXPECT_EQ(TypeParam::getMaximum(&copy), 5);
    EXPECT_TRUE(TypeParam::finalize(&copy));
}

TYPED_TEST(Sequence, CopyOntoItselfChangesNothing)
{
    ASSERT_NO_FATAL_FAILURE(this->fill(this->sequence_, 3));
    EXPECT_EQ(TypeParam::copy(&this->sequence_, &this->sequence_), &this->sequence_);
    EXPECT_TRUE(this->isFilled(this->sequence_, 3));
    EXPECT_EQ(TypeParam::copy(nullptr, &this->sequence_), nullptr);
    EXPECT_EQ(TypeParam::copy(&this->sequence_, nullptr), nullptr);
}

TYPED_TEST(Sequence, CopyNoAllocNeedsRoom)
{
    typename TypeParam::Sequence copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_NO_FATAL_FAILURE(this->fill(this->sequence_, 3));
    EXPECT_FALSE(TypeParam::copyNoAlloc(&copy, &this->sequence_));
    EXPECT_FALSE(TypeParam::copyNoAllocI(&copy, &this->sequence_));
    EXPECT_EQ(TypeParam::getMaximum(&copy), 0);
    ASSERT_TRUE(TypeParam::setMaximum(&copy, 3));
    EXPECT_TRUE(TypeParam::copyNoAlloc(&copy, &this->sequence_));
    EXPECT_TRUE(TypeParam::copyNoAllocI(&copy, &this->sequence_));
    EXPECT_TRUE(this->isFilled(copy, 3));
    EXPECT_TRUE(TypeParam::finalize(&copy));
}

TYPED_TEST(Sequence, GoesFromAnArrayAndBack)
{
    auto elements = this->makeElements(4);
    EXPECT_TRUE(TypeParam::fromArray(&this->sequence_, elements.data(), 4));
    EXPECT_TRUE(this->isFilled(this->sequence_, 4));
    for (auto &element : elements) {
        setElement(element, 9);
    }
    EXPECT_FALSE(TypeParam::toArray(&this->sequence_, elements.data(), 5));
    EXPECT_FALSE(TypeParam::toArray(&this->sequence_, elements.data(), -1));
    EXPECT_TRUE(TypeParam::toArray(&this->sequence_, elements.data(), 3));
    EXPECT_TRUE(holds(elements[0], 1) && holds(elements[2], 3) && holds(elements[3], 9));
    EXPECT_TRUE(TypeParam::fromArray(&this->sequence_, elements.data(), 0));
    EXPECT_EQ(TypeParam::getLength(&this->sequence_), 0);
    EXPECT_FALSE(TypeParam::fromArray(&this->sequence_, nullptr, 1));
    this->release(elements);
}

TYPED_TEST(Sequence, RefusesToChangeAContiguousLoan)
{
    auto elements = this->makeElements(4);
    ASSERT_TRUE(TypeParam::loanContiguous(&this->sequence_, elements.data(), 2, 4));
    EXPECT_FALSE(TypeParam::hasOwnership(&this->sequence_));
    EXPECT_TRUE(this->isFilled(this->sequence_, 2));
    EXPECT_TRUE(TypeParam::setLength(&this->sequence_, 4)); // within the loan
    EXPECT_TRUE(this->isFilled(this->sequence_, 4));
    this->log_.clear();
    EXPECT_FALSE(TypeParam::setMaximum(&this->sequence_, 8));
    EXPECT_FALSE(TypeParam::setMaximum(&this->sequence_, 2));
    EXPECT_FALSE(TypeParam::ensureLength(&this->sequence_, 5, 8));
    EXPECT_FALSE(TypeParam::setLength(&this->sequence_, 5));
    EXPECT_FALSE(TypeParam::finalize(&this->sequence_));
    for (const auto &line : this->log_.lines()) {
        EXPECT_EQ(line.message, &DDS_LOG_SEQUENCE_NOT_OWNER);
    }
    EXPECT_EQ(this->log_.lines().size(), 5u);
    EXPECT_TRUE(TypeParam::unloan(&this->sequence_));
    EXPECT_TRUE(TypeParam::hasOwnership(&this->sequence_));
    EXPECT_EQ(TypeParam::getMaximum(&this->sequence_), 0);
    EXPECT_EQ(TypeParam::getContiguousBuffer(&this->sequence_), nullptr);
    this->release(elements);
}

TYPED_TEST(Sequence, ReadsADiscontiguousLoan)
{
    auto elements = this->makeElements(3);
    typename TypeParam::Element *pointers[] = {&elements[2], &elements[0], &elements[1]};
    ASSERT_TRUE(TypeParam::loanDiscontiguous(&this->sequence_, pointers, 3, 3));
    EXPECT_EQ(TypeParam::getContiguousBuffer(&this->sequence_), nullptr);
    EXPECT_EQ(TypeParam::getContiguousBufferI(&this->sequence_), nullptr);
    EXPECT_EQ(TypeParam::getDiscontiguousBuffer(&this->sequence_), pointers);
    EXPECT_EQ(TypeParam::getDiscontiguousBufferI(&this->sequence_), pointers);
    EXPECT_TRUE(TypeParam::checkInvariants(&this->sequence_));
    EXPECT_EQ(TypeParam::getReference(&this->sequence_, 0), &elements[2]);
    EXPECT_TRUE(holds(TypeParam::get(&this->sequence_, 1), 1));

    typename TypeParam::Sequence copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_NE(TypeParam::copy(&copy, &this->sequence_), nullptr);
    EXPECT_TRUE(holds(TypeParam::get(&copy, 0), 3) && holds(TypeParam::get(&copy, 1), 1) &&
                holds(TypeParam::get(&copy, 2), 2));
    setElement(*TypeParam::getReference(&copy, 0), 5);
    ASSERT_NE(TypeParam::copy(&this->sequence_, &copy), nullptr); // into the lent elements
    EXPECT_TRUE(holds(elements[2], 5));
    EXPECT_TRUE(TypeParam::finalize(&copy));
    EXPECT_TRUE(TypeParam::unloan(&this->sequence_));
    EXPECT_EQ(TypeParam::getDiscontiguousBuffer(&this->sequence_), nullptr);
    this->release(elements);
}

TYPED_TEST(Sequence, TakesALoanOnlyWhenItHasNoElements)
{
    auto elements = this->makeElements(2);
    typename TypeParam::Element *pointers[] = {&elements[0], &elements[1]};
    ASSERT_NO_FATAL_FAILURE(this->fill(this->sequence_, 1));
    EXPECT_FALSE(TypeParam::loanContiguous(&this->sequence_, elements.data(), 1, 2));
    EXPECT_FALSE(TypeParam::loanDiscontiguous(&this->sequence_, pointers, 1, 2));
    EXPECT_FALSE(TypeParam::unloan(&this->sequence_)); // it owns what it has
    EXPECT_TRUE(this->isFilled(this->sequence_, 1));
    ASSERT_TRUE(TypeParam::setMaximum(&this->sequence_, 0));
    EXPECT_TRUE(TypeParam::unloan(&this->sequence_)); // nothing to give back
    EXPECT_FALSE(TypeParam::loanContiguous(&this->sequence_, elements.data(), 3, 2));
    EXPECT_FALSE(TypeParam::loanContiguous(&this->sequence_, elements.data(), -1, 2));
    EXPECT_FALSE(TypeParam::loanContiguous(&this->sequence_, nullptr, 0, 2));
    ASSERT_TRUE(TypeParam::loanContiguous(&this->sequence_, elements.data(), 1, 2));
    EXPECT_FALSE(TypeParam::loanContiguous(&this->sequence_, elements.data(), 1, 2));
    EXPECT_TRUE(TypeParam::unloan(&this->sequence_));
    this->release(elements);
}

TYPED_TEST(Sequence, KeepsTheTokensOfItsReaderUntilTheLoanEnds)
{
    auto elements = this->makeElements(1);
    void *token1 = &elements;
    void *token2 = nullptr;
    ASSERT_TRUE(TypeParam::loanContiguous(&this->sequence_, elements.data(), 1, 1));
    TypeParam::setReadToken(&this->sequence_, &this->sequence_, &elements);
    TypeParam::getReadToken(&this->sequence_, &token1, &token2);
    EXPECT_EQ(token1, &this->sequence_);
    EXPECT_EQ(token2, &elements);
    ASSERT_TRUE(TypeParam::unloan(&this->sequence_));
    TypeParam::getReadToken(&this->sequence_, &token1, &token2);
    EXPECT_EQ(token1, nullptr);
    EXPECT_EQ(token2, nullptr);
    this->release(elements);
}

TYPED_TEST(Sequence, FindsAnInconsistentRecord)
{
    ASSERT_NO_FATAL_FAILURE(this->fill(this->sequence_, 2));
    typename TypeParam::Sequence wrong = this->sequence_;
    wrong._length = 3;
    EXPECT_FALSE(TypeParam::checkInvariants(&wrong));
    wrong = this->sequence_;
    wrong._absolute_maximum = 1;
    EXPECT_FALSE(TypeParam::checkInvariants(&wrong));
    wrong = this->sequence_;
    wrong._contiguous_buffer = nullptr;
    EXPECT_FALSE(TypeParam::checkInvariants(&wrong));
    wrong = this->sequence_;
    wrong._sequence_init = 0;
    EXPECT_FALSE(TypeParam::checkInvariants(&wrong));
    EXPECT_FALSE(TypeParam::checkInvariants(nullptr));
}

TYPED_TEST(Sequence, DeletesItsOwnBufferAlone)
{
    ASSERT_NO_FATAL_FAILURE(this->fill(this->sequence_, 2));
    TypeParam::deleteBuffer(&this->sequence_);
    EXPECT_EQ(TypeParam::getMaximum(&this->sequence_), 0);
    auto elements = this->makeElements(1);
    ASSERT_TRUE(TypeParam::loanContiguous(&this->sequence_, elements.data(), 1, 1));
    TypeParam::deleteBuffer(&this->sequence_);
    EXPECT_TRUE(this->isFilled(this->sequence_, 1));
    EXPECT_TRUE(TypeParam::unloan(&this->sequence_));
    this->release(elements);
}

TYPED_TEST(Sequence, ChangesTheParametersOfElementsOnlyWhileThereAreNone)
{
    DDS_TypeAllocationParams_t allocation = {};
    DDS_TypeDeallocationParams_t deallocation = {};
    EXPECT_TRUE(TypeParam::getElementPointers(&this->sequence_));
    EXPECT_TRUE(TypeParam::setElementPointers(&this->sequence_, DDS_BOOLEAN_FALSE));
    TypeParam::getAllocation(&this->sequence_, &allocation);
    EXPECT_FALSE(allocation.allocate_pointers);
    EXPECT_FALSE(allocation.allocate_optional_members);
    EXPECT_TRUE(allocation.allocate_memory);
    allocation.allocate_optional_members = DDS_BOOLEAN_TRUE;
    EXPECT_TRUE(TypeParam::setAllocation(&this->sequence_, &allocation));
    TypeParam::getDeallocation(&this->sequence_, &deallocation);
    EXPECT_TRUE(deallocation.delete_pointers && deallocation.delete_optional_members);
    deallocation.delete_pointers = DDS_BOOLEAN_FALSE;
    EXPECT_TRUE(TypeParam::setDeallocation(&this->sequence_, &deallocation));
    EXPECT_FALSE(TypeParam::setAllocation(&this->sequence_, nullptr));
    EXPECT_FALSE(TypeParam::setDeallocation(&this->sequence_, nullptr));

    ASSERT_TRUE(TypeParam::setLength(&this->sequence_, 1));
    EXPECT_FALSE(TypeParam::setElementPointers(&this->sequence_, DDS_BOOLEAN_TRUE));
    EXPECT_FALSE(TypeParam::setAllocation(&this->sequence_, &allocation));
    EXPECT_FALSE(TypeParam::setDeallocation(&this->sequence_, &deallocation));
    TypeParam::getAllocation(&this->sequence_, &allocation);
    EXPECT_TRUE(allocation.allocate_optional_members);
}

TYPED_TEST(Sequence, SurvivesEveryFailedAllocation)
{
    typename TypeParam::Sequence copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_NO_FATAL_FAILURE(this->fill(this->sequence_, 4));
    for (const bool isOnward : {false, true}) {
        for (std::uint32_t count = 1;; ++count) {
            ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, isOnward);
            const bool isGrown = TypeParam::ensureLength(&copy, 2, 3);
            const bool isCopied = TypeParam::copy(&copy, &this->sequence_) != nullptr;
            ZUVOsapiFault_disarm();
            const bool isInjected = ZUVOsapiFault_getInjectedCount() > 0;
            EXPECT_NE(isGrown && isCopied, isInjected);
            EXPECT_TRUE(TypeParam::checkInvariants(&copy));
            EXPECT_NE(TypeParam::copy(&copy, &this->sequence_), nullptr);
            EXPECT_TRUE(this->isFilled(copy, 4));
            EXPECT_TRUE(TypeParam::finalize(&copy));
            if (!isInjected) {
                break;
            }
            EXPECT_FALSE(this->log_.lines().empty());
            this->log_.clear();
        }
    }
}

TEST(StringSequence, StartsItsElementsAsNull)
{
    DDS_StringSeq sequence = DDS_SEQUENCE_INITIALIZER;
    const zuv_test::HeapCheck heap;
    ASSERT_TRUE(DDS_StringSeq_ensure_length(&sequence, 2, 2));
    EXPECT_EQ(DDS_StringSeq_get(&sequence, 0), nullptr);
    *DDS_StringSeq_get_reference(&sequence, 1) = DDS_String_dup("mine");
    DDS_StringSeq copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_NE(DDS_StringSeq_copy(&copy, &sequence), nullptr);
    EXPECT_EQ(DDS_StringSeq_get(&copy, 0), nullptr);
    EXPECT_STREQ(DDS_StringSeq_get(&copy, 1), "mine");
    EXPECT_TRUE(DDS_StringSeq_finalize(&sequence));
    EXPECT_TRUE(DDS_StringSeq_finalize(&copy));
    EXPECT_TRUE(heap.isBalanced());
}

TEST(TextSequence, GivesItsElementsRoomForTheirBound)
{
    TestNameSeq sequence = DDS_SEQUENCE_INITIALIZER;
    ASSERT_TRUE(TestNameSeq_ensure_length(&sequence, 1, 1));
    EXPECT_STREQ(TestNameSeq_get(&sequence, 0), "");
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(TestNameSeq_get(&sequence, 0)), 9u);
    EXPECT_TRUE(TestNameSeq_finalize(&sequence));
}

TEST(TextSequence, RefusesToCopyATextBeyondItsBound)
{
    const zuv_test::LogCapture log;
    TestNameSeq sequence = DDS_SEQUENCE_INITIALIZER;
    TestNameSeq copy = DDS_SEQUENCE_INITIALIZER;
    ASSERT_TRUE(TestNameSeq_ensure_length(&sequence, 1, 1));
    DDS_String_replace(TestNameSeq_get_reference(&sequence, 0), "nine chars");
    EXPECT_EQ(TestNameSeq_copy(&copy, &sequence), nullptr);
    EXPECT_FALSE(log.lines().empty());
    EXPECT_TRUE(TestNameSeq_finalize(&sequence));
    EXPECT_TRUE(TestNameSeq_finalize(&copy));
}
