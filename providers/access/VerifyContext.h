// What the parts of the verification share.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/CodePage.h"
#include "platform/Error.h"
#include "providers/access/PageFile.h"
#include "providers/access/PageLedger.h"
#include "providers/access/TableDefinition.h"
#include "providers/tablefile/FileReport.h"

namespace varnel::access {

/// Throughout the verification nothing is thrown but Error{Io}.
struct VerifyContext {
    PageFile& file;
    RowsSeen seen;
    FileReport report;
    PageLedger ledger;
    const CodePage* textPage = nullptr;  ///< of Access 97's texts
    std::size_t tables = 0, rows = 0, indexes = 0, entries = 0;

    void Find(std::string text) { report.findings.push_back(std::move(text)); }
    void Note(std::string text) { report.notes.push_back(std::move(text)); }

    /// Runs step; what is thrown because of the file's contents becomes a finding.
    template <class Step>
    bool Try(Step&& step) {
        try {
            step();
            return true;
        } catch (const Error& error) {
            if (error.kind == ErrorKind::Io) throw;
            Find(error.what());
            return false;
        }
    }
};

inline std::string PlaceOf(const TableDefinition& table) {
    return "Table '" + table.name + "'";
}
inline std::string PlaceOf(const TableDefinition& table, PageNumber page) {
    return PlaceOf(table) + ", page " + std::to_string(page);
}
inline std::string PlaceOf(const TableDefinition& table, RowPointer row) {
    return PlaceOf(table, row.page) + ", row " + std::to_string(row.row);
}

}  // namespace varnel::access
