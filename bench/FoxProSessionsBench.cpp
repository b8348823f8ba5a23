// Sessions from and to FoxPro tables through the real program, beside pgdbf and ogr2ogr on the same rows in the same
// run. Usage: foxpro_sessions_bench [rows] (default 1,000,000).
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "ado/SessionLease.h"
#include "bench/BenchData.h"
#include "bench/Measure.h"
#include "providers/ProviderList.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"

namespace varnel {
namespace {

constexpr int kRuns = 3;

enum SessionNumber { kSqliteToFoxPro = 1, kFoxProToSqlite, kFoxProToText };

class FoxProSessionsBench {
public:
    explicit FoxProSessionsBench(int rows) : rows_(rows) {
        SetProviders(AllProviders());
        InstallVarnel(folder_.Path());
        std::filesystem::create_directory(folder_.File("dbf"));
        MakeTable();
        const std::string source = SqliteConnection(folder_.File("source.db"));
        ExecuteOn(source, BenchTableStatement("loaded"));
        FillBenchTable(source, "loaded", rows);
        ExecuteOn(source, "update loaded set place='Gdansk' where place like 'Gda%'");  // within the table's code page
        ExecuteOn(SqliteConnection(folder_.File("empty.db")), BenchTableStatement("loaded"));
        AddSessions();
    }

    bool Run() {
        std::printf("%-44s %12s %9s %10s\n", "", "rows/s", "seconds", "peak MiB");
        bool allRan = Ours("SQLite -> FoxPro", kSqliteToFoxPro, "rm -rf dbf && cp -r empty dbf");
        Measure("sqlite3 -header -csv source.db 'select * from loaded' > rows.csv", folder_.Path());
        Show("ogr2ogr CSV -> DBF",
             MedianOf(1, "rm -f theirs.*", "ogr2ogr -f 'ESRI Shapefile' theirs.dbf rows.csv > theirs.log 2>&1",
                      folder_.Path()));
        allRan &= Ours("FoxPro -> SQLite", kFoxProToSqlite, "cp empty.db target.db");
        allRan &= Ours("FoxPro -> delimited TEXT", kFoxProToText, "");
        Show("pgdbf", MedianOf(kRuns, "", "pgdbf dbf/loaded.dbf > out.sql", folder_.Path()));
        return allRan;
    }

private:
    void MakeTable() {
        const std::string folder = folder_.File("dbf");
        ExecuteOn(FoxProConnection(),
                  "create table loaded (id I, quantity I, counter N(18,0), price N(10,2), rate "
                  "N(12,4), code C(12), name C(40), place C(30), made T, changed T)");
        CloseIdleSessions();
        std::filesystem::copy(folder, folder_.File("empty"), std::filesystem::copy_options::recursive);
    }
    std::string FoxProConnection() const { return "Provider=VFPOLEDB;Data Source=" + folder_.File("dbf"); }

    void AddSessions() {
        TestRepository repository(folder_.Path());
        const auto add = [&](int id, const std::string& sourceKind, const std::string& source,
                             const std::string& targetKind, const std::string& target, const std::string& table) {
            TestSession session;
            session.id = id;
            session.sourceKind = sourceKind;
            session.sourceConnection = source;
            session.targetKind = targetKind;
            session.targetConnection = target;
            session.sourceType = session.targetType = "DIR";
            session.sourceFolder = session.targetFolder = folder_.File("dbf") + "/";
            session.log = folder_.File("run.log");
            session.tables = {{"loaded", table, BenchColumns(), true, "append", "", "", "", ""}};
            repository.Add(session);
        };
        const std::string sqlite = SqliteConnection(folder_.File("source.db"));
        add(kSqliteToFoxPro, "ACCESS", sqlite, "FOXPRO", FoxProConnection(), "loaded");
        add(kFoxProToSqlite, "FOXPRO", FoxProConnection(), "ACCESS", SqliteConnection(folder_.File("target.db")),
            "loaded");
        add(kFoxProToText, "FOXPRO", FoxProConnection(), "TEXT", "Extended Properties=\"text;CharacterSet=65001\"",
            folder_.File("out.csv"));
        repository.Execute(
            "update vrtabs set SFormat=\",\", SFirstColLine=1, TextQ=\"DQ\", DFormat=\",\", DTextQ=\"DQ\", "
            "FileFormat=\"DELIMITED\", DFirstColLine=1, TextDirDest=\"out\", FileExt=\".csv\"");
        CloseIdleSessions();
    }

    bool Ours(const char* name, int session, const std::string& prepare) {
        const Measurement m = MedianOf(kRuns, prepare, "exec ./varnel " + std::to_string(session), folder_.Path());
        Show(name, m);
        const std::string log = ReadBytes(folder_.File("run.log"));
        const bool loaded = m.status == 0 && log.find(std::to_string(rows_) + " Rows Loaded",
                                                      log.rfind("Starting Session")) != std::string::npos;
        if (!loaded)
            std::printf("FAILED: session %d, status %d\n%s\n", session, m.status,
                        log.substr(log.size() > 1500 ? log.size() - 1500 : 0).c_str());
        return loaded;
    }

    void Show(const char* name, const Measurement& m) const {
        std::printf("%-44s %12.0f %9.2f %10.1f\n", name, rows_ / m.seconds, m.seconds, m.peakMebibytes);
        std::fflush(stdout);
    }

    int rows_;
    TempFolder folder_;
};

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    const int rows = argc > 1 ? std::atoi(argv[1]) : 1'000'000;
    return varnel::FoxProSessionsBench(rows).Run() ? 0 : 1;
}
