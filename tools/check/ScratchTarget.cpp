#include "tools/check/ScratchTarget.h"

#include <algorithm>
#include <utility>

#include "ado/types/ConnectionString.h"
#include "load/TargetStatements.h"
#include "source/SourceQuery.h"
#include "tools/repository/OpenRepository.h"

namespace varnel::admin {
namespace {

/// Changes made to the session's definition for a trial, undone at the end. Pointers to columns that were taken before
/// mean the unchanged ones.
class TrialDefinition {
public:
    TrialDefinition() : session_(SessionDef), columns_(std::move(Columns)) { Columns = columns_; }
    ~TrialDefinition() {
        SessionDef = std::move(session_);
        Columns = std::move(columns_);
    }
    TrialDefinition(const TrialDefinition&) = delete;
    TrialDefinition& operator=(const TrialDefinition&) = delete;

    /// Of the table's selected columns only number kept takes part.
    static void KeepOnly(double tabId, std::size_t kept) {
        std::size_t k = 0;
        for (std::int16_t j = 0; j < Columns.Count(); ++j)
            if (Columns(j).TabID == tabId && Columns(j).SSelected == 1 && k++ != kept) Columns(j).SSelected = 0;
    }

private:
    SessionDefinition session_;
    ModelArray<ColumnEntry> columns_;
};

/// FoxPro writes the folder in front of a free table's name. A container's tables are tried as free ones: only their
/// names may be longer, so the columns are called F1, F2 and so on.
void AimAt(const std::string& folder, const TableFacts& facts, bool container) {
    if (SessionDef.TargetDBName != "FOXPRO") return;
    SessionDef.DBFPath = folder + "/";
    if (!container) return;
    SessionDef.TargetType = "DIR";
    for (std::int16_t j = 0; j < Columns.Count(); ++j) {
        if (Columns(j).TabID != facts.From().TabID) continue;
        Columns(j).SCName = Columns(j).DCName = "F" + std::to_string(j);
    }
}

std::string WordOf(const ColumnEntry& column, bool fromSource) {
    return fromSource ? "its source type '" + column.SOrgDtype + "'" : "its target type '" + column.DDType + "'";
}

}  // namespace

ScratchTarget::ScratchTarget(const Side& target)
    : container_(target.Kind() == "FOXPRO" && SessionDef.TargetType == "DBC") {
    const bool foxPro = target.Kind() == "FOXPRO";
    const bool sqlite = !foxPro && target.IsSqlite();
    const std::string place = foxPro ? folder_.Path() : folder_.File(sqlite ? "trial.db" : "trial.mdb");
    const std::string provider = foxPro ? "VFPOLEDB" : sqlite ? "SQLite" : "Microsoft.Jet.OLEDB.4.0";
    connection_ = "Provider=" + provider + ";Data Source=" + QuotedValue(place) + ";Mode=ReadWriteCreate";
}

/// Returns "" or why the statement is refused.
std::string ScratchTarget::Try(const TableFacts& facts) {
    try {
        Connection link;
        link.Open(connection_);
        link.Execute(CreateStatement(facts.i));
        return "";
    } catch (const Error& error) {
        return error.what();
    }
}

void ScratchTarget::Drop(const TableFacts& facts) {
    Connection link;
    link.Open(connection_);
    link.Execute(DropStatement(facts.i));
}

/// The columns of the table just made, under the names that the run gives them.
std::vector<TableColumn> ScratchTarget::Describe(const TableFacts& facts) const {
    std::vector<TableColumn> made;
    Recordset rows;
    rows.Open("select * " + DeleteStatement(facts.i).substr(std::string_view("delete ").size()), connection_);
    for (std::size_t k = 0; k < rows.FieldCount(); ++k) {
        ColumnInfo& info = made.emplace_back().info;
        info.name = facts.From().TableExists ? facts.columns[k]->SCName : facts.columns[k]->DCName;
        info.type = rows.Fields(k).Type();
        info.definedSize = rows.Fields(k).DefinedSize();
        info.precision = rows.Fields(k).Precision();
        info.numericScale = rows.Fields(k).NumericScale();
    }
    rows.Close();
    return made;
}

/// Opens the table just made as the rows' writer does. Returns "" or why that is refused.
std::string ScratchTarget::TryToWrite(const TableFacts& facts) const {
    try {
        Recordset rows;
        rows.Open(BuildWritingTexts(facts.i).select, connection_, adOpenDynamic, adLockOptimistic);
        rows.Close();
        return "";
    } catch (const Error& error) {
        return error.what();
    }
}

/// Which of the columns cause the refusal: those with which alone the table cannot be made either.
void ScratchTarget::Blame(const TableFacts& facts, const std::string& refusal) {
    bool named = false;
    const bool fromSource = facts.From().TableExists;
    for (std::size_t k = 0; k < facts.columns.size(); ++k) {
        const ColumnEntry* column = facts.columns[k];
        const std::string& name = fromSource ? column->SCName : column->DCName;
        const TrialDefinition trial;
        AimAt(folder_.Path(), facts, container_);
        TrialDefinition::KeepOnly(column->TabID, k);
        const std::string why = Try(facts);
        if (why.empty()) {
            Drop(facts);
            continue;
        }
        named = true;
        facts.Found().Fault(name, "the target table cannot be made with it: " + why,
                            "correct its name, or " + WordOf(*column, fromSource) + " or size");
    }
    if (!named)
        facts.Found().Fault("", "the target table cannot be made: " + refusal,
                            "correct the columns: no two may have the same name, and one at least is needed");
}

std::vector<TableColumn> ScratchTarget::Make(const TableFacts& facts) {
    std::string refusal, writeRefusal;
    std::vector<TableColumn> made;
    {
        const TrialDefinition trial;
        AimAt(folder_.Path(), facts, container_);
        refusal = Try(facts);
        if (refusal.empty()) {
            made = Describe(facts);
            writeRefusal = TryToWrite(facts);
            Drop(facts);
        }
    }
    if (!refusal.empty()) Blame(facts, refusal);
    const bool otherNames = facts.preparation == Preparation::Create && facts.From().LoadOption == "DROP";
    if (!writeRefusal.empty() && !otherNames)
        facts.Found().Fault("", "the table can be made, but not written to: " + writeRefusal,
                            "give other names to the columns that it names");
    return made;
}

}  // namespace varnel::admin
