// What is wrong with one value on its way into a column of a table or a cell of a file.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "ado/types/Value.h"
#include "tools/check/Finding.h"
#include "tools/check/TableFacts.h"

namespace varnel::admin {

/// sort: the same for all troubles of one kind, the words behind the column's name ("is longer than ...").
struct Trouble {
    Severity severity = Severity::Fault;
    std::string sort;
};

/// Judges the values of one column. A value is good when nothing is returned.
class ColumnJudge {
public:
    virtual ~ColumnJudge() = default;
    virtual std::optional<Trouble> Judge(const Value& value) = 0;
};

/// For selected column k. Null when nothing about its values can be told.
std::unique_ptr<ColumnJudge> JudgeOf(const TableFacts& facts, std::size_t k);

}  // namespace varnel::admin
