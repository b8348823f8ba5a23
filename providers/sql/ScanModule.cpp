#include "providers/sql/ScanModule.h"

#include <exception>
#include <string>
#include <utility>

#include "providers/sql/ColumnCodec.h"
#include "providers/sql/FailureForm.h"
#include "providers/sql/SqliteHandle.h"

namespace varnel::sql {
namespace {

struct ScanTable : sqlite3_vtab {
    TableScan* scan = nullptr;
};

struct ScanCursor : sqlite3_vtab_cursor {
    std::unique_ptr<ChosenRows> rows;
    bool atEnd = true;
    std::string scratch;
};

TableScan& ScanOf(sqlite3_vtab* table) {
    return *static_cast<ScanTable*>(table)->scan;
}
ScanCursor& Own(sqlite3_vtab_cursor* cursor) {
    return *static_cast<ScanCursor*>(cursor);
}

/// No exception crosses into SQLite: the scan keeps it.
template <class Body>
int Guard(TableScan& scan, Body&& body) noexcept {
    try {
        body();
        return SQLITE_OK;
    } catch (const Error& error) {
        scan.failure = error;
    } catch (const std::exception& error) {
        scan.failure = Error(ErrorKind::Io, "", error.what());
    }
    return SQLITE_ERROR;
}

std::string Declaration(const TableScan& scan) {
    std::string columns;
    for (const TableScan::Column& column : scan.columns)
        columns += (columns.empty() ? "" : ",") + QuotedName(scan.table->shape.columns[column.position].name);
    return "CREATE TABLE x(" + (columns.empty() ? "\"none\"" : columns) + ")";
}

int Connect(sqlite3* database, void* scanPointer, int, const char* const*, sqlite3_vtab** made, char**) {
    TableScan& scan = *static_cast<TableScan*>(scanPointer);
    return Guard(scan, [&] {
        const int code = sqlite3_declare_vtab(database, Declaration(scan).c_str());
        if (code != SQLITE_OK) throw SqliteError(database, code, scan.table->shape.name);
        auto table = std::make_unique<ScanTable>();
        table->scan = &scan;
        *made = table.release();
    });
}

int Disconnect(sqlite3_vtab* table) {
    delete static_cast<ScanTable*>(table);
    return SQLITE_OK;
}

int BestIndex(sqlite3_vtab*, sqlite3_index_info* plan) {
    plan->estimatedCost = 1e6;
    return SQLITE_OK;
}

int Open(sqlite3_vtab* table, sqlite3_vtab_cursor** made) {
    return Guard(ScanOf(table), [&] { *made = std::make_unique<ScanCursor>().release(); });
}

int Close(sqlite3_vtab_cursor* cursor) {
    delete &Own(cursor);
    return SQLITE_OK;
}

int Next(sqlite3_vtab_cursor* cursor) {
    return Guard(ScanOf(cursor->pVtab), [&] { Own(cursor).atEnd = !Own(cursor).rows->NextCertain(); });
}

int Filter(sqlite3_vtab_cursor* cursor, int, const char*, int, sqlite3_value**) {
    TableScan& scan = ScanOf(cursor->pVtab);
    const int code = Guard(scan, [&] { Own(cursor).rows = std::make_unique<ChosenRows>(scan.table, scan.choice); });
    return code == SQLITE_OK ? Next(cursor) : code;
}

int AtEnd(sqlite3_vtab_cursor* cursor) {
    return Own(cursor).atEnd ? 1 : 0;
}

int Column(sqlite3_vtab_cursor* cursor, sqlite3_context* context, int number) {
    TableScan& scan = ScanOf(cursor->pVtab);
    if (scan.columns.empty()) return SQLITE_OK;  // the column that stands for none: Null
    return Guard(scan, [&] {
        ScanCursor& own = Own(cursor);
        const Value& value = own.rows->Row()[scan.columns[static_cast<std::size_t>(number)].slot];
        const bool failed = value.Kind() == ValueKind::Failure;
        ReturnForm(context, failed ? StoreFailure(value.FailureText(), own.scratch)
                                   : StoreValue(value, Affinity::Blob, own.scratch));
    });
}

int Rowid(sqlite3_vtab_cursor* cursor, sqlite3_int64* id) {
    *id = Own(cursor).rows->Current();
    return SQLITE_OK;
}

/// Without a way to create it, the module is a table of its own name.
constexpr sqlite3_module MakeModule() {
    sqlite3_module module{};
    module.xConnect = Connect;
    module.xDisconnect = Disconnect;
    module.xDestroy = Disconnect;
    module.xBestIndex = BestIndex;
    module.xOpen = Open;
    module.xClose = Close;
    module.xFilter = Filter;
    module.xNext = Next;
    module.xEof = AtEnd;
    module.xColumn = Column;
    module.xRowid = Rowid;
    return module;
}
constexpr sqlite3_module kModule = MakeModule();

}  // namespace

void RegisterScan(sqlite3* database, TableScan& scan) {
    const int code = sqlite3_create_module_v2(database, kScanName, &kModule, &scan, nullptr);
    if (code != SQLITE_OK) throw SqliteError(database, code, scan.table->shape.name);
}

}  // namespace varnel::sql
