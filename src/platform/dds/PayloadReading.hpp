// While one lives, the thread sanitizer does not look at what this thread reads; nothing without that sanitizer.
//
// For a payload that the middleware lends: it counts the users of a payload in an atomic number, which the sanitizer does
// not see, so that the release by the last of them would look like a race with the others' reading.
#ifndef ZUV_PLATFORM_DDS_PAYLOAD_READING_HPP
#define ZUV_PLATFORM_DDS_PAYLOAD_READING_HPP

#ifdef __SANITIZE_THREAD__
extern "C" void AnnotateIgnoreReadsBegin(const char *file, int line);
extern "C" void AnnotateIgnoreReadsEnd(const char *file, int line);
#endif

namespace zuv::dds
{

class PayloadReading
{
public:
#ifdef __SANITIZE_THREAD__
    PayloadReading()
    {
        AnnotateIgnoreReadsBegin(__FILE__, __LINE__);
    }
    ~PayloadReading()
    {
        AnnotateIgnoreReadsEnd(__FILE__, __LINE__);
    }
#else
    PayloadReading() {}
#endif
    PayloadReading(const PayloadReading &) = delete;
    PayloadReading &operator=(const PayloadReading &) = delete;
};

} // namespace zuv::dds

#endif
