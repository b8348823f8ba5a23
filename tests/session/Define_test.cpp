// A database of twenty tables moves from every kind into every other by "define", "import" and a run, with nothing
// written by hand: every row arrives, every value equal but for what the kinds change by rule.
#include <algorithm>
#include <filesystem>
#include <map>

#include "ado/Ado.h"
#include "ado/types/ValueText.h"
#include "platform/CodePage.h"
#include "tests/session/MatrixRules.h"
#include "tests/session/MatrixSide.h"
#include "tests/session/SampleDatabase.h"
#include "tests/session/ServerKinds.h"
#include "tests/session/SessionTest.h"
#include "tests/support/tds/TdsServer.h"

namespace varnel {
namespace {

constexpr MatrixKind kKinds[] = {
    {"Access", "ACCESS", ""}, {"FoxProDir", "FOXPRO", "DIR"}, {"FoxProDbc", "FOXPRO", "DBC"},
    {"Oracle", "ORACLE", ""}, {"MySql", "MySQL", ""},         {"SqlServer", "MSSQL", ""},
    {"Text", "TEXT", ""}};

std::string KindWord(const MatrixKind& kind) {
    return *kind.type == '\0' ? kind.kind : std::string(kind.kind) + " " + kind.type;
}

/// One table as the imported session maps it.
struct MovedTable {
    std::string source, target;
    struct Column {
        std::string source, target, type;
    };
    std::vector<Column> columns;
    bool HasLong() const {
        return std::any_of(columns.begin(), columns.end(), [](const Column& column) {
            return column.type.starts_with("Long") || column.type == "VarBinary" || column.type == "Binary";
        });
    }
};

std::vector<MovedTable> MovedTables(const std::string& repository, int id) {
    const std::string number = std::to_string(id);
    std::map<std::string, MovedTable> tables;
    Recordset rows;
    rows.Open("select TabID, SourceTableName, DestTableName from vrtabs where SessionId=" + number, repository);
    for (; !rows.Eof(); rows.MoveNext())
        tables[DefaultText(rows.Fields(0).GetValue())] = {
            DefaultText(rows.Fields(1).GetValue()), DefaultText(rows.Fields(2).GetValue()), {}};
    Recordset columns;
    columns.Open("select TabID, SCName, DCName, SOrgDtype from SrcDCols where SSelected=1 and sessionid=" + number,
                 repository);
    for (; !columns.Eof(); columns.MoveNext())
        tables[DefaultText(columns.Fields(0).GetValue())].columns.push_back(
            {DefaultText(columns.Fields(1).GetValue()), DefaultText(columns.Fields(2).GetValue()),
             DefaultText(columns.Fields(3).GetValue())});
    std::vector<MovedTable> moved;
    for (auto& [tabId, table] : tables) moved.push_back(std::move(table));
    return moved;
}

std::string WithoutBlanksBehind(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

/// A source's cell as the kind of target holds it.
Cell Carried(const std::string& kind, const MovedTable& table, const std::string& type, const Cell& cell) {
    const bool isMoment = type == "Date" || type == "DBTimeStamp";
    if (kind == "ACCESS" && type == "Boolean" && !cell) return "0";
    if (kind != "MySQL" || !cell) return cell;
    if (isMoment && table.HasLong()) return cell->substr(0, 10) + " 00:00:00";
    return *cell == "NULL" && !table.HasLong() ? Cell() : cell;
}

class DefineTest : public SessionTest, public testing::WithParamInterface<MatrixKind> {
protected:
    DefineTest() {
        static const bool added = (SourceNames().AddMariaDb("other", Server(), "other", "ORACLE"), true);
        static_cast<void>(added);
        Server().Run({"drop database shop", "create database shop"});
        std::filesystem::create_symlink(VARNEL_ADMIN, Path("varnel-admin"));  // which then knows the folder's drives
    }

    /// The fresh database that the tables move into.
    std::unique_ptr<MatrixSide> OtherSide(const MatrixKind& kind, const std::string& folder) {
        auto side = std::make_unique<MatrixSide>(kind, folder, folder_.Path());
        Server().Run({"drop database if exists other", "create database other"});
        if (side->Kind() == "MySQL") side->LogInTo(Server().ConnectionString("other"));
        if (side->Kind() == "MSSQL") side->LogInTo(otherServer_.ConnectionString());
        if (side->Kind() == "ORACLE")
            side->LogInTo(std::string("DSN=other;UID=") + MariaDbServer::kUser + ";PWD={" + MariaDbServer::kPassword +
                          "}");
        return side;
    }

    std::string Admin(const std::vector<std::string>& arguments) {
        RunningProgram program(Path("varnel-admin"), arguments, folder_.Path(), Path("admin.txt"));
        const int status = program.Wait();
        const std::string output = Content("admin.txt");
        std::filesystem::remove(Path("admin.txt"));
        EXPECT_EQ(status, 0) << output;
        return status == 0 ? output : "";
    }

    /// Defines, imports and runs the session into a fresh database of the kind.
    void Move(const MatrixKind& kind, int id) {
        const std::string folder = "into" + std::to_string(id);
        into_ = OtherSide(kind, folder);
        from_->BeSource(session_);
        into_->BeTarget(session_);
        session_.log = Path("run.log");
        std::filesystem::remove(session_.log);
        CloseIdleSessions();
        const std::string file = Path("defined.toml");
        WriteBytes(file, Admin({"define", "--source-kind", KindWord(GetParam()), "--source", session_.sourceConnection,
                                "--target-kind", KindWord(kind), "--target", session_.targetConnection, "--id",
                                std::to_string(id), "--log", session_.log}));
        Admin({"import", file, "--repository", Path("vrrepo.mdb")});
        const std::string defined = ReadBytes(file);
        std::filesystem::remove(file);
        EXPECT_EQ(RunStored(id), 0) << kind.label << "\n" << FirstFailure() << output_ << defined.substr(0, 6000);
    }

    void Compare(const SampleTable& sample, const MovedTable& moved) {
        ASSERT_EQ(moved.columns.size(), sample.columns.size()) << moved.source;
        const auto source = from_->Read(sample.name, sample.columns);
        if (into_->IsFiles()) return CompareFile(sample, moved, source);
        std::vector<MatrixColumn> columns = sample.columns;
        for (std::size_t k = 0; k < columns.size(); ++k) columns[k].name = moved.columns[k].target.c_str();
        const auto target = into_->Read(moved.target, columns);
        ASSERT_EQ(target.size(), source.size()) << moved.source;
        for (std::size_t r = 0; r < source.size(); ++r) {
            for (std::size_t k = 0; k < columns.size(); ++k) CompareCell(sample, moved, k, source[r][k], target[r][k]);
        }
    }

    void CompareCell(const SampleTable& sample, const MovedTable& moved, std::size_t k, const Value& from,
                     const Value& into) const {
        const MovedTable::Column& column = moved.columns[k];
        Cell expected = ComparedCell(sample.columns[k], CellOf(from));
        expected = Carried(into_->Kind(), moved, column.type, expected);
        Cell actual = ComparedCell(sample.columns[k], CellOf(into));
        const bool isPadded = into_->Kind() == "FOXPRO" || column.type == "Char";
        if (isPadded && sample.columns[k].form == CellForm::Text && expected && actual) {
            expected = WithoutBlanksBehind(*expected);
            actual = WithoutBlanksBehind(*actual);
        }
        EXPECT_EQ(expected, actual) << into_->Kind() << ": " << moved.source << "." << column.source << " "
                                    << column.type << " into " << moved.target << "." << column.target;
    }

    static void CompareFile(const SampleTable& sample, const MovedTable& moved,
                            const std::vector<std::vector<Value>>& source) {
        std::string expected;
        for (std::size_t k = 0; k < sample.columns.size(); ++k)
            expected += (k == 0 ? "" : ",") + moved.columns[k].target;
        expected += "\r\n";
        for (const auto& row : source) {
            for (std::size_t k = 0; k < row.size(); ++k) {
                if (k > 0) expected += ',';
                if (!row[k].IsNull()) AppendTextCell(expected, row[k]);
            }
            expected += "\r\n";
        }
        std::string encoded;
        CodePage(1252).Encode(encoded, expected);
        EXPECT_EQ(ReadBytes(moved.target), encoded) << moved.source;
    }

    TdsServer server_, otherServer_;
    std::unique_ptr<MatrixSide> from_, into_;
};

TEST_P(DefineTest, MovesADatabaseIntoEveryKind) {
    from_ = std::make_unique<MatrixSide>(GetParam(), "from", folder_.Path());
    if (from_->Kind() == "MSSQL") from_->LogInTo(server_.ConnectionString());
    std::map<std::string, SampleTable> samples;
    for (const SampleTable& table : SampleTables(GetParam().kind)) {
        ASSERT_TRUE(from_->Fill(table.name, table.columns, table.rows).empty()) << table.name;
        samples[from_->TableName(table.name)] = table;
    }
    int id = 0;
    for (const MatrixKind& kind : kKinds) {
        Move(kind, ++id);
        const auto moved = MovedTables(repository_.ConnectionText(), id);
        EXPECT_EQ(moved.size(), samples.size());
        for (const MovedTable& table : moved) Compare(samples.at(table.source), table);
    }
}

INSTANTIATE_TEST_SUITE_P(From, DefineTest, testing::ValuesIn(kKinds),
                         [](const auto& kind) { return std::string(kind.param.label); });

}  // namespace
}  // namespace varnel
