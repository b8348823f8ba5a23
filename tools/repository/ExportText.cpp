#include "tools/repository/ExportText.h"

#include <algorithm>
#include <initializer_list>
#include <map>
#include <optional>
#include <set>

#include "ado/types/ValueText.h"
#include "platform/Error.h"
#include "tools/repository/HeldRows.h"
#include "tools/repository/SessionRows.h"
#include "tools/sessionfile/ReadSessionFile.h"
#include "tools/sessionfile/WriteSessionFile.h"

namespace varnel::admin {
namespace {

/// Only the first row of a session number counts when it is run.
void KeepFirstSession(StoredRows& rows, std::vector<std::string>& notes) {
    if (rows[kSessions].rows.size() < 2) return;
    notes.push_back("the number is stored " + std::to_string(rows[kSessions].rows.size()) +
                    " times; this is the first one, which is the one that runs");
    rows[kSessions].rows.resize(1);
}

void CheckTableNumbers(const StoredRows& rows, std::vector<std::string>& notes) {
    std::set<std::int64_t> numbers;
    bool ascending = true;
    for (std::size_t row = 0; row < rows[kTables].rows.size(); ++row) {
        const Value& number = rows[kTables].At(row, "TabID");
        const std::string shown = number.IsNull() ? "Null" : DefaultText(number);
        if (number.IsNull() || numbers.contains(number.AsInteger()))
            throw Error(ErrorKind::Misuse, "vrtabs",
                        "two tables have the number vrtabs.TabID " + shown +
                            ", or one has none; give each a number of its own, by varnel-admin sql");
        ascending = ascending && (numbers.empty() || *numbers.rbegin() < number.AsInteger());
        numbers.insert(number.AsInteger());
    }
    if (!ascending)
        notes.push_back(
            "the tables are not stored in the order of their numbers; once imported they may be loaded in it");
}

/// The columns of each table together, as a session file has them; those of no table at the end.
void GroupColumns(StoredRows& rows) {
    std::map<double, std::size_t> ranks;
    for (std::size_t row = 0; row < rows[kTables].rows.size(); ++row)
        ranks.emplace(static_cast<double>(rows[kTables].At(row, "TabID").AsInteger()), row);
    const std::size_t tabId = rows[kColumns].PlaceOf("TabID");
    const auto rank = [&](const std::vector<Value>& row) {
        const auto table = row[tabId].IsNull() ? ranks.end() : ranks.find(row[tabId].AsDouble());
        return table == ranks.end() ? ranks.size() : table->second;
    };
    std::stable_sort(rows[kColumns].rows.begin(), rows[kColumns].rows.end(),
                     [&](const auto& a, const auto& b) { return rank(a) < rank(b); });
}

/// The rows that the text makes once it is imported; why not, when it cannot be.
struct ReadBack {
    StoredRows rows;
    std::string fault;
};

ReadBack ReadAgain(const SessionDefinition& session) {
    try {
        std::vector<std::string> ignored;
        const auto sessions = ReadSessionText(SessionFileText(session, Passwords::Written));
        return {HeldRows(RowsOf(sessions.at(0)), ignored), ""};
    } catch (const Error& error) {
        return {{}, error.what()};
    }
}

bool SameRows(const StoredRows& a, const StoredRows& b) {
    return std::equal(a.begin(), a.end(), b.begin(), [](const auto& x, const auto& y) { return x.rows == y.rows; });
}

/// Each value that the definition makes differently, beginning with the column of that place.
StoredValues Differences(const StoredTable& wanted, const StoredTable& made, std::size_t row, std::size_t from) {
    StoredValues values;
    for (std::size_t k = from; k < wanted.columns.size(); ++k)
        if (!(wanted.rows[row][k] == made.rows[row][k])) values.push_back({wanted.columns[k], wanted.rows[row][k], ""});
    return values;
}

void AddDifferences(SessionDefinition& session, const StoredRows& wanted, const StoredRows& made) {
    session.stored = Differences(wanted[kSessions], made[kSessions], 0, 1);
    std::size_t row = 0;
    for (std::size_t t = 0; t < session.tables.size(); ++t) {
        // The numbers of session and table are keys of their own.
        session.tables[t].stored = Differences(wanted[kTables], made[kTables], t, 2);
        for (ColumnMapping& column : session.tables[t].columns)
            column.stored = Differences(wanted[kColumns], made[kColumns], row++, 2);
    }
}

void Unless(std::string& word, std::initializer_list<std::string_view> known, std::string_view otherwise) {
    if (std::find(known.begin(), known.end(), word) == known.end()) word = otherwise;
}

/// Words that a session file does not know become those that mean the same when a session is run; what is stored is
/// then told beside them.
void UseKnownWords(SessionDefinition& session) {
    for (std::string* type : {&session.sourceType, &session.targetType}) Unless(*type, {"DIR", "DBC"}, "");
    Unless(session.targetText.format, {"DELIMITED"}, "FIXED");
    for (TableMapping& table : session.tables) {
        Unless(table.option, {"DROP", "DELETE"}, "APPEND");
        Unless(table.firstTime, {"CREATE"}, "");
    }
}

/// The session by the keys of a definition; nothing when they cannot say it.
std::optional<SessionDefinition> AsDefinition(const StoredRows& rows) {
    SessionDefinition session = DefinitionOf(rows);
    UseKnownWords(session);
    const ReadBack plain = ReadAgain(session);
    if (!plain.fault.empty()) return std::nullopt;
    for (const TablePlace place : {kSessions, kTables, kColumns})
        if (plain.rows[place].rows.size() != rows[place].rows.size()) return std::nullopt;
    AddDifferences(session, rows, plain.rows);
    const ReadBack again = ReadAgain(session);
    return again.fault.empty() && SameRows(again.rows, rows) ? std::optional(session) : std::nullopt;
}

SessionDefinition AsRows(const StoredRows& rows) {
    SessionDefinition session;
    session.id = static_cast<std::int16_t>(rows[kSessions].At(0, "sessionid").AsInteger());
    for (std::size_t t = 0; t < rows.size(); ++t)
        for (const std::vector<Value>& row : rows[t].rows) {
            StoredRow& stored = session.rows.emplace_back(StoredRow{std::string(kRepositoryTables[t].name), {}, ""});
            for (std::size_t k = 1; k < row.size(); ++k) stored.values.push_back({rows[t].columns[k], row[k], ""});
        }
    const ReadBack again = ReadAgain(session);
    if (!again.fault.empty()) throw Error(ErrorKind::NotSupported, "", again.fault);
    if (!SameRows(again.rows, rows)) throw Error(ErrorKind::NotSupported, "", "it would not read back as it is stored");
    return session;
}

}  // namespace

ExportedSession ExportText(const StoredRows& stored, Passwords passwords) {
    ExportedSession exported;
    StoredRows rows = HeldRows(stored, exported.notes);
    KeepFirstSession(rows, exported.notes);
    CheckTableNumbers(rows, exported.notes);
    StoredRows grouped = rows;
    GroupColumns(grouped);
    auto definition = AsDefinition(grouped);
    SessionDefinition session = definition ? std::move(*definition) : AsRows(rows);
    session.comments = exported.notes;
    exported.text = SessionFileText(session, passwords);
    return exported;
}

}  // namespace varnel::admin
