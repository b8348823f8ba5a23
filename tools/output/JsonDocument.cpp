#include "tools/output/JsonDocument.h"

#include "tools/output/Printing.h"

namespace varnel::admin {

std::string JsonLines(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

void PrintJson(const Json& json) {
    Print(JsonLines(json));
    FinishPrinting();
}

}  // namespace varnel::admin
