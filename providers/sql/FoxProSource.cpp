#include "providers/sql/FoxProSource.h"

#include <charconv>

#include "platform/CodePage.h"
#include "platform/Error.h"
#include "providers/foxpro/FoxProDatabase.h"
#include "providers/sql/FoxProStatements.h"
#include "providers/sql/JetOverFoxPro.h"
#include "providers/sql/TableStoreSession.h"

namespace varnel::sql {
namespace {

bool IsOn(const ConnectionString& text, std::string_view key) {
    const std::string value(TrimBlanks(text.Get({key}, "Yes")));
    for (const std::string_view yes : {"yes", "true", "on", "1", "-1", ""})
        if (EqualNoCase(value, yes)) return true;
    for (const std::string_view no : {"no", "false", "off", "0"})
        if (EqualNoCase(value, no)) return false;
    throw Error(ErrorKind::Syntax, std::string(key),
                "The connection string's " + std::string(key) + " is Yes or No, not '" + value + "'.");
}

int CodePageOf(const ConnectionString& text, int otherwise) {
    const std::optional<std::string> written = text.Find({"CodePage", "Code Page"});
    if (!written) return otherwise;
    int number = 0;
    const auto read = std::from_chars(written->data(), written->data() + written->size(), number);
    if (read.ec != std::errc() || read.ptr != written->data() + written->size() || !CodePage::IsSupported(number))
        throw Error(ErrorKind::Syntax, "CodePage", "The code page '" + *written + "' is not known.");
    return number;
}

}  // namespace

std::unique_ptr<ProviderSession> OpenFoxProSession(const DataSource& source, const ConnectionString& outer) {
    const ConnectionString text = DriverString(outer);
    foxpro::DatabaseOptions options;
    options.showDeleted = !IsOn(text, "Deleted");
    options.columnsTakeNull = IsOn(text, "Null");
    options.codePageWhenNoneStated = CodePageOf(text, options.codePageWhenNoneStated);
    options.newTableCodePage = CodePageOf(text, options.newTableCodePage);
    const bool ansi = IsOn(text, "ANSI");
    const bool jet = SpeaksJet(text);
    const std::string key = std::string("foxpro;") + (options.showDeleted ? "deleted;" : "") +
                            (options.columnsTakeNull ? "" : "notnull;") + (jet ? "trimmed;" : "") +
                            std::to_string(options.codePageWhenNoneStated);
    auto store = FindOrOpenStore(source.storedPath, key, [&]() -> std::unique_ptr<TableStore> {
        auto tables = std::make_unique<foxpro::FoxProDatabase>(source.storedPath, options);
        if (jet) return TrimmedTexts(std::move(tables));
        return tables;
    });
    const Dialect dialect = jet ? JetDialectOverFoxPro() : FoxProDialect(ansi, options.showDeleted);
    return std::make_unique<TableStoreSession>(std::move(store), dialect, source.readOnly);
}

}  // namespace varnel::sql
