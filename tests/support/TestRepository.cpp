#include "tests/support/TestRepository.h"

#include "ado/Ado.h"
#include "ado/types/ValueText.h"

namespace varnel {

namespace {

const char* const kTables[] = {
    "Create Table [sessions] ([sessionid] Long, [SessionName] Text(255), [SourceConnStr] Memo, [TargetConnStr] Memo, "
    "[SourceDBName] Text(50), [TargetDBName] Text(50), [SourceType] Text(50), [TargetType] Text(50), "
    "[SrcDBFPath] Text(255), [DBFPath] Text(255), [logfilename] Text(255), [FPattern] Text(255), [FRename] Text(255), "
    "[FolderName] Text(255), [LastRunDate] Text(50), [LastRunTime] Text(50), [SessionError] Long)",
    "Create Table [vrtabs] ([SessionId] Long, [TabID] Long, [SourceTableName] Text(255), [SourceOwnerName] Text(255), "
    "[DestTableName] Text(255), [DestOwnerName] Text(255), [TableExists] Long, [WhereCond] Memo, [LoadOption] "
    "Text(50), "
    "[FirstTimeLoadOpt] Text(50), [TrimTname] Text(255), [FileName] Text(255), [SFormat] Text(10), [TextQ] Text(10), "
    "[SFirstColLine] Short, [DFormat] Text(10), [TextDirDest] Text(255), [FileFormat] Text(50), [FileExt] Text(10), "
    "[DFirstColLine] Short, [DTextQ] Text(10))",
    "Create Table [SrcDCols] ([sessionid] Long, [TabID] Double, [TName] Text(255), [SCName] Text(255), "
    "[DCName] Text(255), [SCCount] Short, [DCCount] Short, [SDtype] Text(50), [DDType] Text(50), [SWidth] Long, "
    "[DWidth] Long, [SScale] Short, [DScale] Short, [SOrgDtype] Text(50), [Pos] Short, [CPos] Short, [ignor] YesNo, "
    "[SSelected] Short)"};

/// A new record of a repository table, written field by field.
class NewRecord {
public:
    NewRecord(const std::string& connection, const std::string& table, const std::string& columns) {
        records_.Open("Select " + columns + " FROM [" + table + "]", connection, adOpenDynamic, adLockOptimistic);
        records_.AddNew();
    }
    NewRecord& Text(const char* column, const std::string& value) {
        records_.Fields(column).SetValue(Value::OfText(value));
        return *this;
    }
    NewRecord& Number(const char* column, std::int64_t value) {
        records_.Fields(column).SetValue(Value::OfInteger(value));
        return *this;
    }
    void Store() {
        records_.Update();
        records_.Close();
    }

private:
    Recordset records_;
};

void AddSessionRow(const std::string& connection, const TestSession& session) {
    NewRecord record(
        connection, "sessions",
        "[sessionid],[SessionName],[SourceConnStr],[TargetConnStr],[SourceDBName],[TargetDBName],"
        "[SourceType],[TargetType],[SrcDBFPath],[DBFPath],[logfilename],[FPattern],[FRename],[FolderName]");
    record.Number("sessionid", session.id).Text("SessionName", session.name);
    record.Text("SourceConnStr", session.sourceConnection).Text("TargetConnStr", session.targetConnection);
    record.Text("SourceDBName", session.sourceKind).Text("TargetDBName", session.targetKind);
    record.Text("SourceType", session.sourceType).Text("TargetType", session.targetType);
    record.Text("SrcDBFPath", session.sourceFolder).Text("DBFPath", session.targetFolder);
    record.Text("FPattern", session.pattern).Text("FRename", session.rename).Text("FolderName", session.folder);
    record.Text("logfilename", session.log).Store();
}

void AddTableRow(const std::string& connection, const TestSession& session, int tabId, const TestTable& table) {
    NewRecord record(connection, "vrtabs",
                     "[SessionId],[TabID],[SourceTableName],[SourceOwnerName],[DestTableName],[DestOwnerName],"
                     "[TableExists],[WhereCond],[LoadOption],[FirstTimeLoadOpt],[SFormat],[TextQ],[SFirstColLine],"
                     "[FileFormat],[DFormat],[DTextQ],[DFirstColLine],[TextDirDest],[FileExt]");
    const auto &in = session.sourceText, &out = session.targetText;
    record.Text("SFormat", in.delimiter).Text("TextQ", in.qualifier).Number("SFirstColLine", in.header ? 1 : 0);
    record.Text("FileFormat", out.format).Text("DFormat", out.delimiter).Text("DTextQ", out.qualifier);
    record.Number("DFirstColLine", out.header ? 1 : 0).Text("TextDirDest", "C:\\Out").Text("FileExt", ".txt");
    record.Number("SessionId", session.id).Number("TabID", tabId);
    record.Text("SourceTableName", table.source).Text("SourceOwnerName", table.sourceOwner);
    record.Text("DestTableName", table.target).Text("DestOwnerName", table.targetOwner);
    record.Number("TableExists", table.exists ? 1 : 0).Text("WhereCond", table.where);
    record.Text("LoadOption", table.option).Text("FirstTimeLoadOpt", table.firstTime).Store();
}

void AddColumnRow(const std::string& connection, int session, int tabId, const TestColumn& column) {
    NewRecord record(connection, "SrcDCols",
                     "[sessionid],[TabID],[SCName],[DCName],[SCCount],[DCCount],[SDtype],[DDType],[SWidth],[DWidth],"
                     "[SScale],[DScale],[SOrgDtype],[Pos],[CPos],[ignor],[SSelected]");
    record.Number("sessionid", session).Number("TabID", tabId);
    record.Text("SCName", column.source).Text("DCName", column.target.empty() ? column.source : column.target);
    record.Text("SDtype", column.type).Text("SOrgDtype", column.type).Text("DDType", column.targetType);
    record.Number("SWidth", column.width).Number("DWidth", column.width);
    record.Number("SScale", column.scale).Number("DScale", column.scale);
    for (const char* name : {"SCCount", "DCCount", "Pos", "CPos", "ignor"}) record.Number(name, 0);
    record.Number("SSelected", column.selected).Store();
}

}  // namespace

TestRepository::TestRepository(const std::string& folder, Form form)
    : connection_(form == Form::Access ? AccessConnection(folder + "/vrrepo.mdb")
                                       : SqliteConnection(folder + "/vrrepo.mdb")) {
    for (std::string statement : kTables) {
        const bool isKeyed = form == Form::Access && statement.find("[vrtabs]") != std::string::npos;
        if (isKeyed) statement.replace(statement.size() - 1, 1, ", CONSTRAINT k PRIMARY KEY ([SessionId],[TabID]))");
        Execute(statement);
    }
}

void TestRepository::Add(const TestSession& session) {
    AddSessionRow(connection_, session);
    int tabId = session.sourceKind == "TEXTPOLL" ? 0 : 1;
    for (const TestTable& table : session.tables) {
        AddTableRow(connection_, session, tabId, table);
        for (const TestColumn& column : table.columns) AddColumnRow(connection_, session.id, tabId, column);
        ++tabId;
    }
}

void TestRepository::Execute(const std::string& statement) {
    ExecuteOn(connection_, statement);
}

std::string TestRepository::Ask(const std::string& query) {
    return AskRows(connection_, query);
}

std::string AskRows(const std::string& connection, const std::string& query) {
    Recordset rows;
    rows.Open(query, connection);
    std::string text;
    for (; !rows.Eof(); rows.MoveNext()) {
        if (!text.empty()) text += "\n";
        for (std::size_t k = 0; k < rows.FieldCount(); ++k) {
            const Value& value = rows.Fields(k).GetValue();
            text += (k > 0 ? "|" : "") + (value.IsNull() ? std::string("NULL") : DefaultText(value));
        }
    }
    return text;
}

void ExecuteOn(const std::string& connection, const std::string& statement) {
    Connection target;
    target.Open(connection);
    target.Execute(statement);
}

std::string SqliteConnection(const std::string& path) {
    return "Provider=SQLite;Data Source=" + path + ";Mode=ReadWriteCreate";
}

std::string AccessConnection(const std::string& path) {
    return "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path + ";Mode=ReadWriteCreate";
}

}  // namespace varnel
