// The verification of a database that is sound but for some bytes: the input is u16 page, u16 offset, u8 new byte,
// again and again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "platform/Error.h"
#include "providers/access/AccessDatabase.h"
#include "providers/access/BlankDatabase.h"
#include "providers/access/Verify.h"
#include "tests/providers_access/MemoryPageFile.h"
#include "tests/providers_access/SampleFiles.h"

using namespace varnel;
using namespace varnel::access;

namespace {

constexpr std::size_t kChange = 5;

ColumnDefinition Column(std::string name, std::string type) {
    ColumnDefinition column;
    column.name = std::move(name);
    column.typeWord = std::move(type);
    return column;
}

/// Two indexes, memos of all kinds, and the traces of rows that were deleted or have grown.
void FillTable(AccessDatabase& database) {
    std::vector<ColumnDefinition> columns = {Column("Id", "COUNTER"), Column("Name", "TEXT"), Column("Day", "DATETIME"),
                                             Column("Words", "MEMO")};
    columns[0].primaryKey = true;
    columns[1].unique = true;
    columns[1].typeArguments = {200};
    database.CreateTable("T", columns);
    const auto table = database.OpenTable("T");
    for (int k = 0; k < 150; ++k) {
        const std::string name = std::to_string(k * 7919 % 150) + std::string(static_cast<std::size_t>(k), 'n');
        const std::string words(static_cast<std::size_t>(k % 10 == 0 ? k * 90 : k), 'w');
        const std::vector<Value> row = {Value(), Value::OfText(name), Value::OfDateTime({k, 0}), Value::OfText(words)};
        table->Append(row, {false, true, true, true});
    }
    std::vector<RowId> ids;
    const std::vector<std::size_t> all = {0};
    std::vector<Value> row(1);
    for (const auto rows = table->Rows(all); rows->Next(row);) ids.push_back(rows->Current());
    for (std::size_t k = 0; k < ids.size(); k += 9) table->Delete(ids[k]);
    const std::vector<Value> longer = {Value(), Value::OfText(std::string(190, 'z')), Value(), Value()};
    table->Update(ids[1], longer, {false, true, false, false});
    table->Commit();
}

std::vector<std::uint8_t> SoundDatabase() {
    std::string folder = (std::filesystem::temp_directory_path() / "verify-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr) std::abort();
    const std::string path = folder + "/sound.mdb";
    CreateBlankDatabase(path);
    {
        AccessDatabase database(path, AccessOptions());
        FillTable(database);
    }
    std::vector<std::uint8_t> bytes = BytesOfFile(path);
    std::filesystem::remove_all(folder);
    return bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 64 * kChange) return 0;  // keep one run short
    static const std::vector<std::uint8_t> kSound = SoundDatabase();
    std::vector<std::uint8_t> bytes = kSound;
    const std::size_t pages = bytes.size() / kJet4Layout.pageSize;
    for (std::size_t k = 0; k + kChange <= size; k += kChange) {
        const std::size_t page = (data[k] | data[k + 1] << 8) % pages;
        const std::size_t offset = (data[k + 2] | data[k + 3] << 8) % kJet4Layout.pageSize;
        bytes[page * kJet4Layout.pageSize + offset] = data[k + 4];
    }
    MemoryPageFile file(std::move(bytes), kJet4Layout, "fuzz.mdb");
    try {
        const FileReport report = VerifyDatabase(file);
        if (size < kChange && !report.findings.empty()) std::abort();  // nothing was changed
    } catch (const Error&) {                                           // a header that is none
    }
    return 0;
}
