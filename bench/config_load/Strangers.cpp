#include "Strangers.h"

#include <ctime>

#include <malloc.h>

#include <libxml/parser.h>
#include <libxml/xmlschemas.h>
#include <libyang/libyang.h>

#include "Documents.h"
#include "support/Ratio.h"

namespace bench
{

namespace
{

Cost now()
{
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    const struct mallinfo2 heap = mallinfo2();
    return {static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9,
            static_cast<double>(heap.uordblks + heap.hblkhd)};
}

} // namespace

Meter::Meter() : begin_(now()) {}

Cost Meter::cost() const
{
    const Cost end = now();
    return {end.seconds - begin_.seconds, end.bytes - begin_.bytes};
}

Cost costOfLibxml2(const std::string &document)
{
    xmlSchemaParserCtxt *const reader = xmlSchemaNewParserCtxt(ZUV_SCHEMA_FILE);
    xmlSchema *const schema = xmlSchemaParse(reader);
    xmlSchemaFreeParserCtxt(reader);
    if (schema == nullptr) {
        giveUp("libxml2 does not read the schema");
    }
    const Meter meter;
    xmlDoc *const tree =
        xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr, nullptr,
                      XML_PARSE_NONET | XML_PARSE_NOBLANKS | XML_PARSE_BIG_LINES);
    if (tree == nullptr) {
        giveUp("libxml2 does not read the document");
    }
    const double bytes = meter.cost().bytes;
    xmlSchemaValidCtxt *const validation = xmlSchemaNewValidCtxt(schema);
    if (xmlSchemaValidateDoc(validation, tree) != 0) {
        giveUp("libxml2 does not take the document for valid");
    }
    xmlSchemaFreeValidCtxt(validation);
    return {meter.cost().seconds, bytes};
}

Cost costOfLibyang(const std::string &data)
{
    ly_ctx *context = nullptr;
    lys_module *module = nullptr;
    if (ly_ctx_new(nullptr, LY_CTX_NO_YANGLIBRARY, &context) != LY_SUCCESS ||
        lys_parse_mem(context, kDataModel, LYS_IN_YANG, &module) != LY_SUCCESS) {
        giveUp("libyang does not read the model");
    }
    const Meter meter;
    lyd_node *tree = nullptr;
    if (lyd_parse_data_mem(context, data.c_str(), LYD_XML, LYD_PARSE_STRICT, LYD_VALIDATE_PRESENT,
                           &tree) != LY_SUCCESS) {
        giveUp(std::string("libyang does not take the data: ") + ly_errmsg(context));
    }
    return meter.cost();
}

} // namespace bench
