// The XML libraries alone: a transformation, its result as text, and that text read again.
#ifndef ZUV_BENCH_QOS_BARE_TRANSFORMATION_H
#define ZUV_BENCH_QOS_BARE_TRANSFORMATION_H

#include <memory>
#include <string>

namespace bench
{

class BareTransformation
{
public:
    // With values for the stylesheet's parameters "NAME" and "'VALUE'", in turns, up to a null.
    BareTransformation(const std::string &stylesheet, const std::string &element,
                       const char *const *parameters);
    ~BareTransformation();
    BareTransformation(const BareTransformation &) = delete;
    BareTransformation &operator=(const BareTransformation &) = delete;

    void run();

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace bench

#endif
