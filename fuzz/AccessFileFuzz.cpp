// Any bytes as an Access file, all of whose tables are read. The first byte chooses the version; the rest is a sparse
// file.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <vector>

#include "fuzz/SparseFile.h"
#include "platform/Error.h"
#include "providers/access/AccessDatabase.h"
#include "tests/providers_access/MemoryPageFile.h"

using namespace varnel;
using namespace varnel::access;

namespace {

constexpr std::size_t kMostTables = 8;  // keep one run short

void ReadTable(AccessDatabase& database, const std::string& name) {
    try {
        const auto table = database.OpenTable(name);
        std::vector<std::size_t> wanted(table->Columns().size());
        std::iota(wanted.begin(), wanted.end(), std::size_t{0});
        const auto rows = table->Rows(wanted);
        std::vector<Value> row(wanted.size());
        std::int64_t count = 0;
        while (rows->Next(row)) ++count;
        if (count != table->CountRows()) std::abort();
    } catch (const Error&) {  // refusing is right; a crash or another exception is not
    }
}

void ReadQuery(AccessDatabase& database, const std::string& name) {
    try {
        database.ViewText(name);
    } catch (const Error&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 1 || size > 48 * 1024) return 0;
    const Layout& shape = data[0] % 2 == 0 ? kJet4Layout : kJet3Layout;
    auto file = std::make_shared<MemoryPageFile>(ExpandSparseFile({data + 1, size - 1}, shape.pageSize), shape, "fuzz");
    try {
        AccessDatabase database(std::move(file), AccessOptions());
        std::vector<std::string> names = database.TableNames();
        if (names.size() > kMostTables) names.resize(kMostTables);
        names.insert(names.end(), {"MSysObjects", "MSysQueries"});
        for (const std::string& name : names) ReadTable(database, name);
        ReadQuery(database, "SelectQuery");
    } catch (const Error&) {
    }
    return 0;
}
