#include "tests/providers_mysql/MySqlTest.h"

#include "ado/types/ValueText.h"

namespace varnel {

MariaDbServer& Server() {
    static MariaDbServer server;
    return server;
}

std::unique_ptr<ProviderSession> MySqlTest::LogIn(const std::string& moreKeys) {
    return MySqlProvider().Open(ConnectionString(Server().ConnectionString() + ";" + moreKeys));
}

std::vector<Row> MySqlTest::Rows(ProviderSession& session, const std::string& query) {
    std::vector<Row> rows;
    const auto reader = session.Query(query);
    Row row(reader->Columns().size());
    while (reader->Next(row)) rows.push_back(row);
    return rows;
}

Value MySqlTest::First(ProviderSession& session, const std::string& query) {
    const auto rows = Rows(session, query);
    return rows.empty() ? Value() : rows.at(0).at(0);
}

std::string Shown(const Value& value) {
    static constexpr const char* kNames[] = {"Null",    "Boolean",  "Integer", "Single", "Double", "Currency",
                                             "Decimal", "DateTime", "Text",    "Bytes",  "Guid",   "Failure"};
    std::string text = kNames[static_cast<std::size_t>(value.Kind())];
    if (value.IsNull()) return text;
    text += ' ';
    if (value.Kind() == ValueKind::Failure) return text.append(value.FailureText());
    if (value.Kind() == ValueKind::DateTime)
        AppendIsoDateTime(text, value.AsDateTime());
    else
        AppendDefaultText(text, value);
    return text;
}

}  // namespace varnel
