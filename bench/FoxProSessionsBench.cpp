// Sessions from and to FoxPro tables through the real program, beside pgdbf and ogr2ogr on the same rows in the same
// run. Usage: foxpro_sessions_bench [rows] (default 1,000,000).
#include <filesystem>

#include "ado/SessionLease.h"
#include "bench/SessionsBench.h"

namespace varnel {
namespace {

enum SessionNumber { kSqliteToFoxPro = 1, kFoxProToSqlite, kFoxProToText };

class FoxProSessionsBench : public SessionsBench {
public:
    explicit FoxProSessionsBench(int rows) : SessionsBench(rows) {
        MakeTable();
        const Side sqlite{"ACCESS", FillSqlite("source.db")};
        ExecuteOn(sqlite.connection,
                  "update loaded set place='Gdansk' where place like 'Gda%'");  // within the table's code page
        const Side foxPro{"FOXPRO", FoxProConnection()};
        AddInFolder(SessionFor(kSqliteToFoxPro, sqlite, foxPro));
        AddInFolder(SessionFor(kFoxProToSqlite, foxPro, {"ACCESS", SqliteConnection(File("target.db"))}));
        AddInFolder(SessionFor(kFoxProToText, foxPro,
                               {"TEXT", "Extended Properties=\"text;CharacterSet=65001\"", File("out.csv")}));
    }

    bool Run() const {
        ShowHead();
        Shell("sqlite3 -header -csv source.db 'select * from loaded' > rows.csv");
        const Measurement ogr = Tool("ogr2ogr CSV -> DBF", "ogr2ogr", "rm -f theirs.*",
                                     "ogr2ogr -f 'ESRI Shapefile' theirs.dbf rows.csv > theirs.log 2>&1");
        bool allRan = Ours("SQLite -> FoxPro", kSqliteToFoxPro, "rm -rf dbf && cp -r empty dbf", ogr.seconds);
        allRan &= Ours("FoxPro -> SQLite", kFoxProToSqlite, FreshSqlite());
        const Measurement pgdbf = Tool("pgdbf", "pgdbf", "", "pgdbf dbf/loaded.dbf > out.sql");
        allRan &= Ours("FoxPro -> delimited TEXT", kFoxProToText, "", pgdbf.seconds);
        return allRan;
    }

private:
    void MakeTable() const {
        std::filesystem::create_directory(File("dbf"));
        ExecuteOn(FoxProConnection(),
                  "create table loaded (id I, quantity I, counter N(18,0), price N(10,2), rate "
                  "N(12,4), code C(12), name C(40), place C(30), made T, changed T)");
        CloseIdleSessions();
        std::filesystem::copy(File("dbf"), File("empty"), std::filesystem::copy_options::recursive);
    }
    std::string FoxProConnection() const { return "Provider=VFPOLEDB;Data Source=" + File("dbf"); }

    void AddInFolder(TestSession session) {
        session.sourceType = session.targetType = "DIR";
        session.sourceFolder = session.targetFolder = File("dbf") + "/";
        Add(session);
    }
};

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    return varnel::RunBench<varnel::FoxProSessionsBench>(argc, argv);
}
