// One JSON document on standard output.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace varnel::admin {

/// Keys stay in the order in which they were set.
using Json = nlohmann::ordered_json;

/// Indented by two blanks, with a line feed at the end; bytes that are no UTF-8 become the replacement character.
std::string JsonLines(const Json& json);
/// Throws Error{Io} when standard output cannot be written.
void PrintJson(const Json& json);

}  // namespace varnel::admin
