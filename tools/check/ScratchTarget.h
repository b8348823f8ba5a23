// Trying out, in a private folder, how a table file would take a CREATE TABLE statement.
#pragma once

#include <memory>
#include <string>

#include "tools/check/ScratchFolder.h"
#include "tools/check/Side.h"
#include "tools/check/TableFacts.h"

namespace varnel::admin {

class ScratchTarget {
public:
    /// target: an Access or SQLite file, a folder of FoxPro tables or a container, there or not.
    /// Throws Error when the trial cannot be set up.
    explicit ScratchTarget(const Side& target);

    /// Makes the table as the run would and describes it. A refusal is a fault of the columns that cause it, or of the
    /// table; the result is then empty.
    std::vector<TableColumn> Make(const TableFacts& facts);

private:
    std::string Try(const TableFacts& facts);
    std::string TryToWrite(const TableFacts& facts) const;
    std::vector<TableColumn> Describe(const TableFacts& facts) const;
    void Drop(const TableFacts& facts);
    void Blame(const TableFacts& facts, const std::string& refusal);

    ScratchFolder folder_;
    std::string connection_;
    bool container_ = false;
};

}  // namespace varnel::admin
