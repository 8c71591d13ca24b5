#include "platform/typesys/Sequence.h"

#include <algorithm>
#include <cstring>

#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/SampleOps.hpp"

namespace
{

constexpr std::size_t kAlignment = 16;

bool isNull(const void *sequence)
{
    return ZUV_PRECONDITION(DDS, DDS_SUBMODULE_SEQUENCE, sequence == nullptr,
                            "self == ((void *)0)");
}

bool refuse(const ZUVLogMessage &message)
{
    ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_SEQUENCE, &message);
    return false;
}

bool refuse(const ZUVLogMessage &message, const char *text)
{
    ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_SEQUENCE, &message, text);
    return false;
}

bool refuse(const ZUVLogMessage &message, std::uint64_t first, std::uint64_t second)
{
    ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_SEQUENCE, &message, static_cast<int>(first),
            static_cast<int>(second));
    return false;
}

// A record of zeros is taken for an empty sequence.
void ensureInitialized(ZUVSequence &self)
{
    if (!zuv::isInitialized(self)) {
        ZUVSequence_initialize(&self);
    }
}

bool isContiguous(const ZUVSequence &self)
{
    return self._discontiguous_buffer == nullptr;
}

// The program of the elements, null for plain bytes; false if there should be one and is none.
bool findProgram(const ZUVSequenceElement &element, const zuv::Program *&program)
{
    program = element.typeCode != nullptr ? zuv::Program::of(element.typeCode) : nullptr;
    return program != nullptr || element.typeCode == nullptr;
}

bool isPlain(const zuv::Program *program)
{
    return program == nullptr || program->isPlain();
}

void finalizeElements(const ZUVSequence &self, const zuv::Program *program, std::uint32_t size,
                      std::uint32_t first)
{
    if (isPlain(program)) {
        return;
    }
    for (std::uint32_t i = first; i < self._maximum; ++i) {
        zuv::finalizeSample(*program, zuv::elementAt(self, i, size), self._elementDeallocParams);
    }
}

// Initialize the elements of an owned sequence from `first` on. On failure none of them holds anything.
bool initializeElements(ZUVSequence &self, const zuv::Program *program, std::uint32_t size,
                        std::uint32_t first)
{
    if (program == nullptr || (program->isPlain() && program->isZeroDefault())) {
        std::memset(zuv::elementAt(self, first, size), 0,
                    std::size_t{self._maximum - first} * size);
        return true;
    }
    for (std::uint32_t i = first; i < self._maximum; ++i) {
        if (!zuv::initializeSample(*program, zuv::elementAt(self, i, size),
                                   self._elementAllocParams)) {
            self._maximum = i;
            finalizeElements(self, program, size, first);
            return false;
        }
    }
    return true;
}

// Exchange the buffer of an owned sequence for one of `maximum` elements, the first `kept` of which move.
// On failure the sequence is as it was.
bool exchangeBuffer(ZUVSequence &self, const ZUVSequenceElement &element, std::uint32_t maximum,
                    std::uint32_t kept)
{
    const zuv::Program *program = nullptr;
    if (!findProgram(element, program)) {
        return false;
    }
    ZUVSequence changed = self;
    changed._contiguous_buffer = nullptr;
    changed._maximum = maximum;
    changed._length = std::min(self._length, maximum);
    if (maximum > 0) {
        changed._contiguous_buffer =
            ZUVOsapiHeap_allocateBufferAligned(std::size_t{maximum} * element.size, kAlignment);
        if (changed._contiguous_buffer == nullptr) {
            return refuse(ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_ARRAY_dd, maximum, element.size);
        }
        if (kept > 0) {
            std::memcpy(changed._contiguous_buffer, self._contiguous_buffer,
                        std::size_t{kept} * element.size);
        }
        if (maximum > kept && !initializeElements(changed, program, element.size, kept)) {
            ZUVOsapiHeap_freeBufferAligned(changed._contiguous_buffer);
            return false;
        }
    }
    finalizeElements(self, program, element.size, kept);
    ZUVOsapiHeap_freeBufferAligned(self._contiguous_buffer);
    self = changed;
    return true;
}

bool setMaximum(ZUVSequence &self, const ZUVSequenceElement &element, std::uint32_t maximum)
{
    if (!self._owned) {
        return refuse(DDS_LOG_SEQUENCE_NOT_OWNER);
    }
    if (maximum > self._absolute_maximum) {
        return refuse(DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd, maximum, self._absolute_maximum);
    }
    if (maximum == self._maximum) {
        return true;
    }
    return exchangeBuffer(self, element, maximum, std::min(maximum, self._maximum));
}

bool ensureLength(ZUVSequence &self, const ZUVSequenceElement &element, std::uint32_t length,
                  std::uint32_t maximum)
{
    if (length > maximum) {
        return refuse(DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd, length, maximum);
    }
    if (length > self._maximum && !setMaximum(self, element, maximum)) {
        return false;
    }
    self._length = length;
    return true;
}

// Copy elements between two buffers that both have room for them.
bool copyElements(const ZUVSequence &destination, const ZUVSequence &source, std::uint32_t length,
                  const ZUVSequenceElement &element)
{
    const zuv::Program *program = nullptr;
    if (!findProgram(element, program)) {
        return false;
    }
    if (isPlain(program) && isContiguous(destination) && isContiguous(source)) {
        if (length > 0) {
            std::memmove(destination._contiguous_buffer, source._contiguous_buffer,
                         std::size_t{length} * element.size);
        }
        return true;
    }
    for (std::uint32_t i = 0; i < length; ++i) {
        void *to = zuv::elementAt(destination, i, element.size);
        const void *from = zuv::elementAt(source, i, element.size);
        if (program == nullptr) {
            std::memmove(to, from, element.size);
        } else if (!zuv::copySample(*program, to, from)) {
            return false;
        }
    }
    return true;
}

[[gnu::noinline]] bool refuseGrowth(const ZUVSequence &self, std::uint32_t length)
{
    return self._owned
               ? refuse(DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd, length, self._absolute_maximum)
               : refuse(DDS_LOG_SEQUENCE_NOT_OWNER);
}

[[gnu::noinline]] bool refuseBuffer(std::uint32_t length, std::uint32_t elementSize)
{
    return refuse(ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_ARRAY_dd, length, elementSize);
}

// Room for `length` elements in a sequence whose present values do not matter: those of plain elements are
// not moved to the new buffer. The length is left alone.
inline bool makePlainRoom(ZUVSequence &self, std::uint32_t elementSize, std::uint32_t length)
{
    if (length <= self._maximum) {
        return true;
    }
    if (!self._owned || length > self._absolute_maximum) [[unlikely]] {
        return refuseGrowth(self, length);
    }
    void *buffer =
        ZUVOsapiHeap_allocateBufferAligned(std::size_t{length} * elementSize, kAlignment);
    if (buffer == nullptr) {
        return refuseBuffer(length, elementSize);
    }
    if (self._contiguous_buffer != nullptr) {
        ZUVOsapiHeap_freeBufferAligned(self._contiguous_buffer);
    }
    self._contiguous_buffer = buffer;
    self._maximum = length;
    self._length = 0;
    return true;
}

bool makeRoom(ZUVSequence &self, const ZUVSequenceElement &element, std::uint32_t length)
{
    if (element.typeCode == nullptr) {
        return makePlainRoom(self, element.size, length);
    }
    if (length <= self._maximum) {
        return true;
    }
    return self._owned && length <= self._absolute_maximum
               ? exchangeBuffer(self, element, length, self._maximum)
               : refuseGrowth(self, length);
}

// The caller gives every element its texts: room for their bounds would only cost memory.
[[gnu::noinline]] bool makeRoomForSamples(ZUVSequence &self, const ZUVSequenceElement &element,
                                          std::uint32_t length)
{
    const DDS_TypeAllocationParams_t params = self._elementAllocParams;
    self._elementAllocParams.allocate_memory = DDS_BOOLEAN_FALSE;
    const bool hasRoom = makeRoom(self, element, length);
    self._elementAllocParams = params;
    return hasRoom;
}

bool canTakeLoan(const ZUVSequence &self, const void *buffer, DDS_Long length, DDS_Long maximum)
{
    if (!self._owned || self._maximum > 0) {
        return refuse(ZUV_LOG_ANY_FAILURE_s, "lend elements to a sequence that has some");
    }
    if (length < 0 || length > maximum ||
        static_cast<std::uint32_t>(maximum) > self._absolute_maximum) {
        return refuse(DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd, static_cast<std::uint32_t>(length),
                      static_cast<std::uint32_t>(maximum));
    }
    return buffer != nullptr || maximum == 0 || refuse(DDS_LOG_BAD_PARAMETER_s, "buffer");
}

bool takeLoan(ZUVSequence &self, void *contiguous, void **discontiguous, DDS_Long length,
              DDS_Long maximum)
{
    self._contiguous_buffer = contiguous;
    self._discontiguous_buffer = discontiguous;
    self._length = static_cast<std::uint32_t>(length);
    self._maximum = static_cast<std::uint32_t>(maximum);
    self._owned = DDS_BOOLEAN_FALSE;
    return true;
}

bool isNegative(DDS_Long number, const char *name)
{
    return number < 0 && !refuse(DDS_LOG_BAD_PARAMETER_s, name);
}

// An empty sequence that owns its elements, whatever it held.
void forgetElements(ZUVSequence &self)
{
    self._contiguous_buffer = nullptr;
    self._discontiguous_buffer = nullptr;
    self._read_token1 = nullptr;
    self._read_token2 = nullptr;
    self._length = 0;
    self._maximum = 0;
    self._owned = DDS_BOOLEAN_TRUE;
}

} // namespace

bool zuv::growSequence(ZUVSequence *sequence, const Op &op, std::uint32_t length)
{
    if (!isInitialized(*sequence)) {
        ZUVSequence_initialize(sequence);
        sequence->_absolute_maximum = op.bound;
    }
    const bool hasRoom = op.sequenceElement.typeCode == nullptr
                             ? makePlainRoom(*sequence, op.sequenceElement.size, length)
                             : makeRoomForSamples(*sequence, op.sequenceElement, length);
    if (hasRoom) {
        sequence->_length = length;
    }
    return hasRoom;
}

void zuv::emptySequence(ZUVSequence *sequence, const Op &op)
{
    if (!isInitialized(*sequence) || (sequence->_owned && sequence->_maximum == 0)) {
        return;
    }
    if (sequence->_owned) {
        finalizeElements(*sequence, op.element, op.sequenceElement.size, 0);
        ZUVOsapiHeap_freeBufferAligned(sequence->_contiguous_buffer);
    }
    forgetElements(*sequence);
}

DDS_Boolean ZUVSequence_initialize(ZUVSequence *self)
{
    if (isNull(self)) {
        return DDS_BOOLEAN_FALSE;
    }
    *self = DDS_SEQUENCE_INITIALIZER;
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean ZUVSequence_finalize(ZUVSequence *self, const ZUVSequenceElement *element)
{
    if (isNull(self)) {
        return DDS_BOOLEAN_FALSE;
    }
    ensureInitialized(*self);
    return setMaximum(*self, *element, 0);
}

DDS_Long ZUVSequence_getMaximum(const ZUVSequence *self)
{
    return isNull(self) || !zuv::isInitialized(*self) ? 0 : static_cast<DDS_Long>(self->_maximum);
}

DDS_Boolean ZUVSequence_setMaximum(ZUVSequence *self, const ZUVSequenceElement *element,
                                   DDS_Long maximum)
{
    if (isNull(self) || isNegative(maximum, "maximum")) {
        return DDS_BOOLEAN_FALSE;
    }
    ensureInitialized(*self);
    return setMaximum(*self, *element, static_cast<std::uint32_t>(maximum));
}

DDS_Boolean ZUVSequence_setAbsoluteMaximum(ZUVSequence *self, DDS_Long maximum)
{
    if (isNull(self) || isNegative(maximum, "maximum")) {
        return DDS_BOOLEAN_FALSE;
    }
    ensureInitialized(*self);
    if (static_cast<std::uint32_t>(maximum) < self->_maximum) {
        return refuse(DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd, self->_maximum,
                      static_cast<std::uint32_t>(maximum));
    }
    self->_absolute_maximum = static_cast<std::uint32_t>(maximum);
    return DDS_BOOLEAN_TRUE;
}

DDS_Long ZUVSequence_getLength(const ZUVSequence *self)
{
    return isNull(self) || !zuv::isInitialized(*self) ? 0 : static_cast<DDS_Long>(self->_length);
}

DDS_Boolean ZUVSequence_setLength(ZUVSequence *self, const ZUVSequenceElement *element,
                                  DDS_Long length)
{
    return ZUVSequence_ensureLength(self, element, length, length);
}

DDS_Boolean ZUVSequence_ensureLength(ZUVSequence *self, const ZUVSequenceElement *element,
                                     DDS_Long length, DDS_Long maximum)
{
    if (isNull(self) || isNegative(length, "length") || isNegative(maximum, "maximum")) {
        return DDS_BOOLEAN_FALSE;
    }
    ensureInitialized(*self);
    return ensureLength(*self, *element, static_cast<std::uint32_t>(length),
                        static_cast<std::uint32_t>(maximum));
}

void ZUVSequence_get(const ZUVSequence *self, const ZUVSequenceElement *element, DDS_Long index,
                     void *value)
{
    const void *reference = ZUVSequence_getReference(self, element, index);
    if (reference != nullptr) {
        std::memcpy(value, reference, element->size);
    } else {
        std::memset(value, 0, element->size);
    }
}

void *ZUVSequence_getReference(const ZUVSequence *self, const ZUVSequenceElement *element,
                               DDS_Long index)
{
    if (isNull(self)) {
        return nullptr;
    }
    if (!zuv::isInitialized(*self) || index < 0 ||
        static_cast<std::uint32_t>(index) >= self->_length) {
        refuse(DDS_LOG_BAD_PARAMETER_s, "index");
        return nullptr;
    }
    return zuv::elementAt(*self, static_cast<std::uint32_t>(index), element->size);
}

ZUVSequence *ZUVSequence_copy(ZUVSequence *self, const ZUVSequenceElement *element,
                              const ZUVSequence *source)
{
    if (isNull(self) || isNull(source)) {
        return nullptr;
    }
    ensureInitialized(*self);
    const std::uint32_t length = zuv::isInitialized(*source) ? source->_length : 0;
    if (self == source) {
        return self;
    }
    if (!makeRoom(*self, *element, length) || !copyElements(*self, *source, length, *element)) {
        return nullptr;
    }
    self->_length = length;
    return self;
}

DDS_Boolean ZUVSequence_copyNoAlloc(ZUVSequence *self, const ZUVSequenceElement *element,
                                    const ZUVSequence *source)
{
    if (isNull(self) || isNull(source)) {
        return DDS_BOOLEAN_FALSE;
    }
    if (ZUVSequence_getLength(source) > ZUVSequence_getMaximum(self)) {
        return refuse(DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd, source->_length,
                      static_cast<std::uint32_t>(ZUVSequence_getMaximum(self)));
    }
    return ZUVSequence_copy(self, element, source) != nullptr;
}

DDS_Boolean ZUVSequence_fromArray(ZUVSequence *self, const ZUVSequenceElement *element,
                                  const void *array, DDS_Long length)
{
    ZUVSequence source = DDS_SEQUENCE_INITIALIZER;
    // The array is only read from.
    return ZUVSequence_loanContiguous(&source, const_cast<void *>(array), length, length) &&
           ZUVSequence_copy(self, element, &source) != nullptr;
}

DDS_Boolean ZUVSequence_toArray(const ZUVSequence *self, const ZUVSequenceElement *element,
                                void *array, DDS_Long length)
{
    if (isNull(self)) {
        return DDS_BOOLEAN_FALSE;
    }
    if (length > ZUVSequence_getLength(self)) {
        return refuse(DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd, static_cast<std::uint32_t>(length),
                      static_cast<std::uint32_t>(ZUVSequence_getLength(self)));
    }
    ZUVSequence destination = DDS_SEQUENCE_INITIALIZER;
    return ZUVSequence_loanContiguous(&destination, array, length, length) &&
           copyElements(destination, *self, static_cast<std::uint32_t>(length), *element);
}

DDS_Boolean ZUVSequence_loanContiguous(ZUVSequence *self, void *buffer, DDS_Long length,
                                       DDS_Long maximum)
{
    if (isNull(self)) {
        return DDS_BOOLEAN_FALSE;
    }
    ensureInitialized(*self);
    return canTakeLoan(*self, buffer, length, maximum) &&
           takeLoan(*self, buffer, nullptr, length, maximum);
}

DDS_Boolean ZUVSequence_loanDiscontiguous(ZUVSequence *self, void **buffer, DDS_Long length,
                                          DDS_Long maximum)
{
    if (isNull(self)) {
        return DDS_BOOLEAN_FALSE;
    }
    ensureInitialized(*self);
    return canTakeLoan(*self, buffer, length, maximum) &&
           takeLoan(*self, nullptr, buffer, length, maximum);
}

DDS_Boolean ZUVSequence_unloan(ZUVSequence *self)
{
    if (isNull(self)) {
        return DDS_BOOLEAN_FALSE;
    }
    ensureInitialized(*self);
    if (self->_owned) {
        return self->_maximum == 0 ||
               refuse(ZUV_LOG_ANY_FAILURE_s, "return a loan that the sequence does not hold");
    }
    forgetElements(*self);
    return DDS_BOOLEAN_TRUE;
}

void *ZUVSequence_getContiguousBuffer(const ZUVSequence *self)
{
    return isNull(self) || !zuv::isInitialized(*self) ? nullptr : self->_contiguous_buffer;
}

void **ZUVSequence_getDiscontiguousBuffer(const ZUVSequence *self)
{
    return isNull(self) || !zuv::isInitialized(*self) ? nullptr : self->_discontiguous_buffer;
}

DDS_Boolean ZUVSequence_hasOwnership(const ZUVSequence *self)
{
    return !isNull(self) && (!zuv::isInitialized(*self) || self->_owned);
}

void ZUVSequence_getReadToken(const ZUVSequence *self, void **token1, void **token2)
{
    const bool isSet = !isNull(self) && zuv::isInitialized(*self);
    *token1 = isSet ? self->_read_token1 : nullptr;
    *token2 = isSet ? self->_read_token2 : nullptr;
}

void ZUVSequence_setReadToken(ZUVSequence *self, void *token1, void *token2)
{
    if (isNull(self)) {
        return;
    }
    ensureInitialized(*self);
    self->_read_token1 = token1;
    self->_read_token2 = token2;
}

DDS_Boolean ZUVSequence_checkInvariants(const ZUVSequence *self)
{
    if (isNull(self) || !zuv::isInitialized(*self)) {
        return DDS_BOOLEAN_FALSE;
    }
    const bool isWithinLimits =
        self->_length <= self->_maximum && self->_maximum <= self->_absolute_maximum;
    const bool hasOneBuffer =
        self->_contiguous_buffer == nullptr || self->_discontiguous_buffer == nullptr;
    const bool hasBuffer =
        self->_contiguous_buffer != nullptr || self->_discontiguous_buffer != nullptr;
    const bool isOwnBuffer =
        self->_discontiguous_buffer == nullptr && hasBuffer == (self->_maximum > 0);
    return isWithinLimits && hasOneBuffer && (hasBuffer || self->_maximum == 0) &&
           (!self->_owned || isOwnBuffer);
}

void ZUVSequence_deleteBuffer(ZUVSequence *self, const ZUVSequenceElement *element)
{
    if (!isNull(self) && zuv::isInitialized(*self) && self->_owned) {
        setMaximum(*self, *element, 0);
    }
}

DDS_Boolean ZUVSequence_getElementPointersAllocation(const ZUVSequence *self)
{
    DDS_TypeAllocationParams_t params;
    ZUVSequence_getElementAllocationParams(self, &params);
    return params.allocate_pointers;
}

DDS_Boolean ZUVSequence_setElementPointersAllocation(ZUVSequence *self, DDS_Boolean allocate)
{
    DDS_TypeAllocationParams_t params;
    ZUVSequence_getElementAllocationParams(self, &params);
    params.allocate_pointers = allocate;
    return ZUVSequence_setElementAllocationParams(self, &params);
}

void ZUVSequence_getElementAllocationParams(const ZUVSequence *self,
                                            DDS_TypeAllocationParams_t *params)
{
    *params = isNull(self) || !zuv::isInitialized(*self) ? DDS_TYPE_ALLOCATION_PARAMS_DEFAULT
                                                         : self->_elementAllocParams;
}

DDS_Boolean ZUVSequence_setElementAllocationParams(ZUVSequence *self,
                                                   const DDS_TypeAllocationParams_t *params)
{
    if (isNull(self) || params == nullptr) {
        return DDS_BOOLEAN_FALSE;
    }
    ensureInitialized(*self);
    if (self->_maximum > 0) {
        return refuse(ZUV_LOG_ANY_FAILURE_s, "change the parameters of elements that exist");
    }
    self->_elementAllocParams = *params;
    return DDS_BOOLEAN_TRUE;
}

void ZUVSequence_getElementDeallocationParams(const ZUVSequence *self,
                                              DDS_TypeDeallocationParams_t *params)
{
    *params = isNull(self) || !zuv::isInitialized(*self) ? DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT
                                                         : self->_elementDeallocParams;
}

DDS_Boolean ZUVSequence_setElementDeallocationParams(ZUVSequence *self,
                                                     const DDS_TypeDeallocationParams_t *params)
{
    if (isNull(self) || params == nullptr) {
        return DDS_BOOLEAN_FALSE;
    }
    ensureInitialized(*self);
    if (self->_maximum > 0) {
        return refuse(ZUV_LOG_ANY_FAILURE_s, "change the parameters of elements that exist");
    }
    self->_elementDeallocParams = *params;
    return DDS_BOOLEAN_TRUE;
}
