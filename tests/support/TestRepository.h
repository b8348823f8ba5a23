// A repository made for a test: vrrepo.mdb with the three tables, and sessions described in a few lines.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace varnel {

/// One column mapping. target empty: the same name; targetType empty: the column is defined from the source.
struct TestColumn {
    std::string source;
    std::string type;  ///< the ADO type name without "ad" ("Integer", "VarWchar")
    int width = 0;
    int scale = 0;
    std::string target = {};
    std::string targetType = {};
    int selected = 1;
};

struct TestTable {
    std::string source, target;
    std::vector<TestColumn> columns;
    bool exists = true;
    std::string option = "DROP";
    std::string where = {};
    std::string firstTime = {};
    std::string sourceOwner = {}, targetOwner = {};
};

/// How text files are laid out; qualifier is the stored code.
struct TestTextLayout {
    std::string delimiter = ",";
    std::string qualifier = "DQ";
    bool header = true;
    std::string format = "DELIMITED";  ///< of a text target
};

struct TestSession {
    int id = 1;
    std::string name = "Test";
    std::string sourceKind = "ACCESS", sourceConnection;
    std::string targetKind = "ACCESS", targetConnection;
    std::string sourceType, sourceFolder;  ///< of a FoxPro source: "DIR" or "DBC", and the folder before table names
    std::string targetType, targetFolder;
    std::string log;
    std::string folder, pattern, rename;  ///< of a polled folder
    TestTextLayout sourceText, targetText;
    std::vector<TestTable> tables;
};

class TestRepository {
public:
    enum class Form { Sqlite, Access };
    /// Makes folder/vrrepo.mdb; in an Access file the session's tables have a primary key. Needs SetProviders to have
    /// been called.
    explicit TestRepository(const std::string& folder, Form form = Form::Sqlite);

    /// Stores a session; its tables are numbered from 1, the template of a polled folder 0.
    void Add(const TestSession& session);
    /// Runs any statement on the repository.
    void Execute(const std::string& statement);
    /// The default texts of a query's fields, rows joined by LF and fields by "|"; Null reads as "NULL".
    std::string Ask(const std::string& query);

    const std::string& ConnectionText() const { return connection_; }

private:
    std::string connection_;
};

/// The same for any connection string.
std::string AskRows(const std::string& connection, const std::string& query);
void ExecuteOn(const std::string& connection, const std::string& statement);
/// "Provider=SQLite;Data Source=path;Mode=ReadWriteCreate"
std::string SqliteConnection(const std::string& path);
/// "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=path;Mode=ReadWriteCreate"
std::string AccessConnection(const std::string& path);

}  // namespace varnel
