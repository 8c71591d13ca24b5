// The rules of sequences, for every sequence type of a test program. The program includes this in one of its
// sources, and says there which types it has:
//
//   std::span<const zuv_test::SequenceType> zuv_test::sequenceTypes() { ... ZUV_TEST_SEQUENCE(TSeq, T, code) ... }
//
// Each rule is one test, which tries one type after the other: the types are many, and each takes microseconds.
#ifndef ZUV_TESTS_SUPPORT_SEQUENCE_SUITE_H
#define ZUV_TESTS_SUPPORT_SEQUENCE_SUITE_H

#include <cstddef>
#include <cstring>
#include <functional>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "support/SequenceType.h"

namespace zuv_test
{

std::span<const SequenceType> sequenceTypes();

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
