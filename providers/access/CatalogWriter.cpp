#include "providers/access/CatalogWriter.h"

#include <algorithm>
#include <array>

#include "platform/Clock.h"
#include "platform/Error.h"
#include "providers/access/SystemTables.h"

namespace varnel::access {
namespace {

std::string BytesOf(const Value& value) {
    if (value.Kind() != ValueKind::Bytes) return "";
    const std::span<const std::uint8_t> bytes = value.AsBytes();
    return {bytes.begin(), bytes.end()};
}

std::int64_t IntegerOf(const Value& value) {
    return value.Kind() == ValueKind::Integer ? value.AsInteger() : 0;
}

std::shared_ptr<const TableDefinition> Shared(const TableDefinition& definition) {
    return std::make_shared<const TableDefinition>(definition);
}

}  // namespace

void CatalogWriter::AddRow(TableWriter& table, const std::vector<std::pair<const char*, Value>>& cells) {
    std::vector<Value> values;
    std::vector<std::size_t> positions;
    for (const auto& [column, value] : cells) {
        values.push_back(value);
        positions.push_back(ColumnAt(table.Definition(), column));
    }
    table.Insert({values, std::vector<bool>(values.size(), true), positions});
}

/// The account that owns the database.
std::string CatalogWriter::Administrator() {
    constexpr std::array<std::string_view, 3> kColumns = {"Type", "Name", "Owner"};
    const auto rows = schema_.Rows(Shared(objects_.Definition()), kColumns);
    std::array<Value, kColumns.size()> row;
    while (rows->Next(row))
        if (IntegerOf(row[0]) == kDocumentObject && row[1].Kind() == ValueKind::Text && row[1].AsText() == "MSysDb")
            return BytesOf(row[2]);
    throw Error(ErrorKind::Corrupt, schema_.File()->StoredPath(),
                "The database '" + schema_.File()->StoredPath() + "' is damaged: it has no owner.");
}

/// The rights that a table gets from the container of tables; those of whoever creates it are the administrator's.
std::vector<CatalogWriter::Right> CatalogWriter::InheritedRights() {
    constexpr std::int64_t kRightsOfCreator = 0xF00FE;
    constexpr std::array<std::string_view, 4> kColumns = {"ObjectId", "SID", "ACM", "FInheritable"};
    const auto rows = schema_.Rows(Shared(aces_.Definition()), kColumns);
    const std::string administrator = Administrator();
    std::vector<Right> rights;
    std::array<Value, kColumns.size()> row;
    while (rows->Next(row)) {
        if (IntegerOf(row[0]) != kTablesContainer || row[3].Kind() != ValueKind::Boolean || !row[3].AsBoolean())
            continue;
        rights.push_back({BytesOf(row[1]), IntegerOf(row[2])});
    }
    const auto own = [&](const Right& right) { return right.account == administrator; };
    if (std::any_of(rights.begin(), rights.end(), own)) {
        std::erase_if(rights, [&](const Right& right) { return right.mask == kRightsOfCreator && !own(right); });
    } else {
        for (Right& right : rights)
            if (right.mask == kRightsOfCreator) right.account = administrator;
    }
    return rights;
}

void CatalogWriter::AddTable(std::string_view name, PageNumber id, const std::string& properties) {
    const Value now = Value::OfDateTime(NowToTheSecond());
    AddRow(objects_, {{"Id", Value::OfInteger(id)},
                      {"ParentId", Value::OfInteger(kTablesContainer)},
                      {"Name", Value::OfText(name)},
                      {"Type", Value::OfInteger(kTableObject)},
                      {"DateCreate", now},
                      {"DateUpdate", now},
                      {"Owner", Value::OfBytes(Administrator())},
                      {"Flags", Value::OfInteger(0)},
                      {"LvProp", properties.empty() ? Value() : Value::OfBytes(properties)}});
    for (const Right& right : InheritedRights())
        AddRow(aces_, {{"ObjectId", Value::OfInteger(id)},
                       {"SID", Value::OfBytes(right.account)},
                       {"ACM", Value::OfInteger(right.mask)},
                       {"FInheritable", Value::OfBoolean(false)}});
}

void CatalogWriter::RemoveTable(const CatalogEntry& table) {
    objects_.Delete(UnpackRowPointer(static_cast<std::uint32_t>(table.row)));
    constexpr std::array<std::string_view, 1> kColumns = {"ObjectId"};
    std::vector<RowPointer> doomed;
    {
        const auto rows = schema_.Rows(Shared(aces_.Definition()), kColumns);
        std::array<Value, kColumns.size()> row;
        while (rows->Next(row))
            if (IntegerOf(row[0]) == table.id)
                doomed.push_back(UnpackRowPointer(static_cast<std::uint32_t>(rows->Current())));
    }
    for (const RowPointer row : doomed) aces_.Delete(row);
}

}  // namespace varnel::access
