// One side of a session of the matrix: a database of a kind, with ways to make a table in it and to read it back.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/session/MatrixRows.h"
#include "tests/session/ServerKinds.h"
#include "tests/support/TestRepository.h"

namespace varnel {

/// A kind of database, with the sub-kind of FoxPro: {"FOXPRO", "DBC"}, or "FIXED" of text in fixed widths.
struct MatrixKind {
    const char *label, *kind, *type;
};

class MatrixSide {
public:
    /// name tells the two sides of a test apart: "from" or "into". installation: the test's folder.
    MatrixSide(const MatrixKind& kind, const std::string& name, const std::string& installation);

    /// Logs in elsewhere than the kind's server usually does.
    void LogInTo(const std::string& connection) { connection_ = local_ = connection; }

    const std::string& Kind() const { return kind_; }
    bool IsFixed() const { return type_ == "FIXED"; }
    /// The kind by which columns and rules are chosen.
    const std::string& Layout() const { return IsFixed() ? type_ : kind_; }
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
    const char* Owner() const { return server_ == nullptr ? "" : server_->owner; }

private:
    std::string Quoted(const std::string& name) const;
    std::string TableInSql(const std::string& table) const;
    /// Returns the ids of the rows that it leaves out.
    std::vector<std::string> WriteText(const std::string& table, const std::vector<MatrixColumn>& columns,
                                       const Rows& rows) const;

    std::string kind_, type_;
    const ServerKind* server_ = nullptr;  ///< of a kind that is one
    std::string connection_;              ///< of the session
    std::string local_;                   ///< of the test's own log-ins
    std::string folder_;
};

}  // namespace varnel
