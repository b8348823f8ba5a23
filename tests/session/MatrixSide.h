// One side of a session of the matrix: a database of a kind, with ways to make a table in it and to read it back.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/session/MatrixRows.h"
#include "tests/support/OdbcNames.h"
#include "tests/support/TestRepository.h"

namespace varnel {

/// A kind of database, with the sub-kind of FoxPro: {"FOXPRO", "DBC"}.
struct MatrixKind {
    const char *label, *kind, *type;
};

/// What all sides of a test share.
struct MatrixWorld {
    std::string folder;  ///< of the installation
    const MariaDbServer* mariaDb;
    std::string sqlServer;  ///< connection string of the stand-in
};

class MatrixSide {
public:
    /// name tells the two sides of a test apart: "from" or "into".
    MatrixSide(const MatrixKind& kind, const std::string& name, const MatrixWorld& world);

    const std::string& Kind() const { return kind_; }
    bool IsFiles() const { return kind_ == "TEXT" || kind_ == "TEXTPOLL"; }

    /// Makes and fills a source table. Returns the ids of the rows that this kind cannot hold, which are left out.
    std::vector<std::string> Fill(const std::string& table, const std::vector<MatrixColumn>& columns, const Rows& rows);
    /// Makes a table that the session is to drop.
    void MakeOld(const std::string& table) const;
    /// As the designer would have recorded the columns of a source table.
    std::vector<TestColumn> Describe(const std::string& table, const std::vector<MatrixColumn>& columns) const;
    /// What the table holds, in the order of ID.
    std::vector<std::vector<Value>> Read(const std::string& table, const std::vector<MatrixColumn>& columns) const;
    /// The folder of a text side.
    const std::string& Folder() const { return folder_; }

    void BeSource(TestSession& session) const;
    void BeTarget(TestSession& session) const;
    std::string TableName(const std::string& table) const { return IsFiles() ? table + ".csv" : table; }
    const char* Owner() const { return kind_ == "MSSQL" ? "dbo" : "shop"; }

private:
    std::string Quoted(const std::string& name) const;
    std::string TableInSql(const std::string& table) const;
    void WriteText(const std::string& table, const std::vector<MatrixColumn>& columns, const Rows& rows) const;

    std::string kind_, type_;
    std::string connection_;  ///< of the session
    std::string local_;       ///< of the test's own log-ins
    std::string folder_;
    const MatrixWorld& world_;
};

}  // namespace varnel
