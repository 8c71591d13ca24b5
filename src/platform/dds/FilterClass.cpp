#include "FilterClass.hpp"

#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/topic/IContentFilter.hpp>
#include <fastdds/dds/topic/IContentFilterFactory.hpp>

#include "Conversions.hpp"
#include "RegisteredType.hpp"
#include "Report.hpp"
#include "platform/dds/ContentFilter.hpp"
#include "platform/osapi/Fault.h"

namespace zuv::dds
{
namespace
{

namespace fast = eprosima::fastdds::dds;
using FastReturnCode = eprosima::fastrtps::types::ReturnCode_t;

class Filter final : public fast::IContentFilter
{
public:
    explicit Filter(ContentFilter filter) : filter_(std::move(filter)) {}

    bool evaluate(const SerializedPayload &payload, const FilterSampleInfo & /* info */,
                  const GUID_t & /* reader */) const override
    {
        return filter_.admits(payload.data, payload.length);
    }

private:
    const ContentFilter filter_;
};

} // namespace

class FilterClassImpl final : public fast::IContentFilterFactory
{
public:
    FastReturnCode create_content_filter(const char * /* className */, const char * /* typeName */,
                                         const fast::TopicDataType *type, const char *expression,
                                         const ParameterSeq &parameters,
                                         fast::IContentFilter *&instance) override
    {
        const DDS_TypeCode *const typeCode = typeCodeOf(type);
        if (typeCode == nullptr || expression == nullptr || parameters.length() != 0) {
            return FastReturnCode::RETCODE_BAD_PARAMETER;
        }
        std::optional<ContentFilter> filter = ContentFilter::parse(*typeCode, expression);
        if (!filter || ZUV_OSAPI_FAULT("dds.create_content_filter")) {
            return FastReturnCode::RETCODE_BAD_PARAMETER;
        }
        delete static_cast<Filter *>(instance);
        instance = new Filter(std::move(*filter));
        return FastReturnCode::RETCODE_OK;
    }

    FastReturnCode delete_content_filter(const char * /* className */,
                                         fast::IContentFilter *instance) override
    {
        delete static_cast<Filter *>(instance);
        return FastReturnCode::RETCODE_OK;
    }
};

FilterClass::FilterClass() : impl_(std::make_unique<FilterClassImpl>()) {}

FilterClass::~FilterClass() = default;

const char *FilterClass::name()
{
    return "ZUVFILTER";
}

std::unique_ptr<FilterClass> FilterClass::make(fast::DomainParticipant &participant)
{
    std::unique_ptr<FilterClass> made(new FilterClass);
    if (ZUV_OSAPI_FAULT("dds.register_filter_class") ||
        participant.register_content_filter_factory(name(), made->impl_.get()) !=
            FastReturnCode::RETCODE_OK) {
        ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "filter class");
        return nullptr;
    }
    return made;
}

} // namespace zuv::dds
