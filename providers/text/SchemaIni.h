// Schema.ini, the file in a folder of text files that says how each of them is laid out.
#pragma once

#include <string_view>

#include "providers/text/IniFile.h"
#include "providers/text/TextFormat.h"

namespace varnel::text {

class SchemaIni {
public:
    /// Says nothing about any file.
    SchemaIni() = default;
    /// bytes: the file's content. Faults show when the file they concern is asked for.
    explicit SchemaIni(std::string_view bytes) : ini_(bytes) {}

    /// The layout of a file: what its section says; else what otherwise says.
    /// Throws Error{Syntax} when the section holds a value that is none ("In the text file specification 'a.csv', the
    /// 'Format' option is invalid.") or the whole does not fit together.
    TextFormat FormatOf(std::string_view fileName, const TextFormat& otherwise) const;

private:
    IniFile ini_;
};

}  // namespace varnel::text
