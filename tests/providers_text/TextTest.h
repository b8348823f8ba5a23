// A folder of text files made for one test, and what is read out of it, in a form that a table of cases can hold.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ado/types/Value.h"
#include "platform/Error.h"
#include "providers/tablefile/TableFile.h"
#include "providers/text/RecordBuffer.h"

namespace varnel::text {

/// A folder that is removed with everything in it.
class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const std::string& Path() const { return path_; }
    /// Writes a file of the folder anew; returns its path.
    std::string Write(const std::string& name, std::string_view bytes) const;

private:
    std::string path_;
};

/// A table as text. A value: its default text; texts in quotes; ~ for Null; !words for a failure. Rows are joined by a
/// line feed, values by a bar.
struct Shown {
    std::string names;  ///< joined by a bar
    std::string types;  ///< codes joined by a bar
    std::string rows;
    std::int64_t count = 0;  ///< as CountRows says
};

std::string ShownValue(const Value& value);
std::string ShownRows(TableFile& table);
/// Opens a table of the folder and reads all of it.
Shown ReadTable(const TestFolder& folder, const std::string& table, const std::string& options = "",
                std::size_t bufferBytes = kBufferBytes);
/// Reads a file of these bytes with windows of several sizes, which must make no difference, and with a count that
/// must be the number of rows. schema: the lines of the file's section of Schema.ini; "" for none.
Shown ReadBytes(std::string_view bytes, const std::string& schema = "", const std::string& options = "");
/// The text of the Error that step throws; "" when it throws none.
template <class Step>
std::string ErrorOf(Step&& step) {
    try {
        step();
    } catch (const Error& error) {
        return error.what();
    }
    return "";
}

}  // namespace varnel::text
