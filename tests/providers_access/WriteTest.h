// What the tests of writing share: a new database in a folder of its own, tables made in a line, rows given as values.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "providers/access/AccessDatabase.h"
#include "providers/access/BlankDatabase.h"
#include "providers/access/Verify.h"
#include "tests/providers_access/SampleFiles.h"
#include "tests/support/ErrorOf.h"
#include "tests/support/TempFolder.h"

namespace varnel::access {

/// "Id COUNTER PRIMARY KEY, Name TEXT(50) NOT NULL UNIQUE, Price DECIMAL(10,2)"
std::vector<ColumnDefinition> Columns(const std::string& list);
Value Int(std::int64_t number);
Value Txt(std::string_view text);
/// Appends a row with every column set.
void Add(TableFile& table, const std::vector<Value>& row);
/// Sets columns, by position, of a row.
void Set(TableFile& table, RowId row, const std::vector<std::pair<std::size_t, Value>>& cells);

/// A new database.
class WriteTest : public testing::Test {
protected:
    WriteTest() { CreateBlankDatabase(path_), Reopen(); }
    void Reopen() {
        database_.reset();
        file_ = OpenPageFile(path_, false);
        database_ = std::make_unique<AccessDatabase>(file_, AccessOptions());
    }
    /// In place of the new database a copy of a sample.
    void OpenSample(const std::string& name) {
        database_.reset(), file_.reset();
        WriteBytes(path_, ReadBytes(SamplePath(name).value()));
        Reopen();
    }
    /// Fails the test when anything in the file is damaged.
    void Verify() {
        for (const std::string& finding : VerifyDatabase(*file_).findings) ADD_FAILURE() << finding;
    }
    std::unique_ptr<TableFile> Make(const std::string& name, const std::string& columns) {
        database_->CreateTable(name, Columns(columns));
        return database_->OpenTable(name);
    }
    std::string Rows(const std::string& table) { return Shown(ReadTable(*database_, table)); }

    TempFolder folder_;
    std::string path_ = folder_.File("new.mdb");
    std::shared_ptr<PageFile> file_;
    std::unique_ptr<AccessDatabase> database_;
};

}  // namespace varnel::access
