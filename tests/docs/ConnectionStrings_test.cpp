// The tables of docs/connection-strings.md say who opens a stored string, and what it becomes for an ODBC driver.
#include <gtest/gtest.h>

#include "platform/Error.h"
#include "providers/ProviderList.h"
#include "providers/odbc/ConnectionText.h"
#include "tests/docs/Page.h"

namespace varnel {
namespace {

/// "`text`" without its quotes.
std::string Code(const std::string& cell) {
    return cell.size() < 2 ? cell : cell.substr(1, cell.size() - 2);
}

std::string OpenedBy(const std::string& stored) {
    static const std::vector<const Provider*> providers = AllProviders();
    constexpr const char* kNames[] = {"MySQL client", "files", "ODBC"};
    for (std::size_t k = 0; k < providers.size(); ++k)
        if (providers[k]->Accepts(ConnectionString(stored))) return kNames[k];
    return "nobody";
}

TEST(ConnectionStringsPage, SaysWhoOpensAString) {
    const auto rows = TableRows("docs/connection-strings.md", "| stored string | opened by | as |");
    EXPECT_GT(rows.size(), 20u);
    for (const auto& row : rows) EXPECT_EQ(OpenedBy(Code(row[0])), row[1]) << row[0];
}

TEST(ConnectionStringsPage, SaysWhatAStringBecomes) {
    const std::vector<std::string> registered{"FreeTDS", "Oracle 21 ODBC driver"};
    const auto rows = TableRows("docs/connection-strings.md", "| stored string | becomes |");
    EXPECT_GT(rows.size(), 15u);
    for (const auto& row : rows) {
        EXPECT_EQ(OpenedBy(Code(row[0])), "ODBC") << row[0];
        EXPECT_EQ(odbc::TranslateConnection(ConnectionString(Code(row[0])), registered).text, Code(row[1])) << row[0];
    }
}

TEST(ConnectionStringsPage, NamesTheOnesThatNobodyOpens) {
    EXPECT_EQ(OpenedBy("Provider=IBMDADB2;Data Source=x"), "nobody");
    EXPECT_EQ(OpenedBy("Provider=SAOLEDB;Data Source=x"), "nobody");
}

}  // namespace
}  // namespace varnel
