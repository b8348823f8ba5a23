// Texts as they are shown in a terminal.
#pragma once

#include <string>
#include <string_view>

namespace varnel::admin {

/// text as it can stand in a line: line breaks and other control characters as \n, \r, \t, \xNN.
std::string EscapedLine(std::string_view text);
/// Terminal columns that a text takes: East Asian letters and pictures two, combining marks none.
std::size_t ShownWidth(std::string_view utf8);

}  // namespace varnel::admin
