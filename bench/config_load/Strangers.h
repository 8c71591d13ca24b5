// What other libraries need for the same documents.
#ifndef ZUV_BENCH_CONFIG_LOAD_STRANGERS_H
#define ZUV_BENCH_CONFIG_LOAD_STRANGERS_H

#include <string>

namespace bench
{

// Processor time in seconds, and heap in bytes that stays in use.
struct Cost {
    double seconds = 0;
    double bytes = 0;
};

// From the construction to each question.
class Meter
{
public:
    Meter();
    Cost cost() const;

private:
    Cost begin_;
};

// libxml2 reads the document into a tree without blanks, and validates it; the schema is compiled before.
Cost costOfLibxml2(const std::string &document);

// libyang reads the data into a tree, and validates it; the model is compiled before.
Cost costOfLibyang(const std::string &data);

} // namespace bench

#endif
