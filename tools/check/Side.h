// The two databases of a session, opened so that nothing in them can change.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ado/Ado.h"
#include "platform/Error.h"
#include "tools/check/Finding.h"

namespace varnel::admin {

/// What a connection string says about files.
struct FilePlace {
    bool isFiles = false;       ///< the provider or driver opens files or folders
    std::string path;           ///< stored path; may be empty
    bool isSqlite = false;      ///< the string names SQLite
    bool makesMissing = false;  ///< a missing file is made
};
/// Throws Error{Syntax}.
FilePlace PlaceOf(const std::string& connection);

class Side {
public:
    /// word: "source" or "target", for the texts.
    Side(std::string word, std::string kind, std::string connection)
        : word_(std::move(word)), kind_(std::move(kind)), connection_(std::move(connection)) {}

    const std::string& Kind() const { return kind_; }
    const FilePlace& Place() const { return place_; }
    /// The connection string under which the side is read.
    const std::string& Reading() const { return reading_; }
    /// Reads from another folder instead.
    void Move(const std::string& path);

    /// Logs in; a failure is a fault with its remedy. A target file that the run makes counts as open and empty.
    bool Open(Findings& found);
    /// True for a SQLite file, by its bytes or, while it is missing, by the connection string. Throws Error{Io}.
    bool IsSqlite() const;
    /// True when the target's file is missing and the run makes it.
    bool IsMade() const { return isMade_; }

    /// The names of all tables; empty when the database cannot tell them.
    std::vector<std::string> TableNames() const;
    /// The columns of a query's rows; at most one row is read. Throws Error.
    std::vector<ColumnInfo> ColumnsOf(const std::string& query) const;
    /// The first value of the first row as a number. Throws Error.
    double NumberOf(const std::string& query) const;
    const Connection& Link() const { return link_; }

private:
    bool FindPlace(Findings& found);

    std::string word_, kind_, connection_, reading_;
    FilePlace place_;
    Connection link_;
    bool isMade_ = false;
};

/// The remedy for a place or a server that cannot be opened.
std::string RemedyFor(const Error& error, bool isFiles);

}  // namespace varnel::admin
