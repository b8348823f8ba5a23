// Sessions from and to Access files through the real program, beside mdb-export on the same file in the same run.
// Usage: access_sessions_bench [rows] (default 1,000,000).
#include "bench/SessionsBench.h"

#include "ado/SessionLease.h"

namespace varnel {
namespace {

enum SessionNumber { kSqliteToAccess = 1, kAccessToAccess, kAccessToText };

class AccessSessionsBench : public SessionsBench {
public:
    explicit AccessSessionsBench(int rows) : SessionsBench(rows) {
        MakeTable("plain.mdb", "");
        MakeTable("keyed.mdb", " primary key");
        const Side sqlite{"ACCESS", FillSqlite("source.db")};
        const Side source{"ACCESS", AccessConnection(File("source.mdb"))};
        const Side target{"ACCESS", AccessConnection(File("target.mdb"))};
        const Side text{"TEXT", "Extended Properties=\"text;CharacterSet=65001\"", File("out.csv")};
        Add(SessionFor(kSqliteToAccess, sqlite, target));
        Add(SessionFor(kAccessToAccess, source, target));
        Add(SessionFor(kAccessToText, source, text));
    }

    bool Run() const {
        ShowHead();
        bool allRan = Ours("SQLite -> Access", kSqliteToAccess, "cp plain.mdb target.mdb");
        allRan &= Ours("SQLite -> Access, primary key", kSqliteToAccess, "cp keyed.mdb target.mdb");
        Shell("cp target.mdb source.mdb");
        allRan &= Ours("Access -> Access", kAccessToAccess, "cp plain.mdb target.mdb");
        allRan &= Ours("Access -> Access, primary key", kAccessToAccess, "cp keyed.mdb target.mdb");
        const Measurement theirs = Tool("mdb-export", "mdb-export", "", "mdb-export source.mdb loaded > out.csv", 1);
        allRan &= Ours("Access -> delimited TEXT", kAccessToText, "", theirs.seconds);
        return allRan;
    }

private:
    void MakeTable(const char* file, const std::string& key) const {
        ExecuteOn(AccessConnection(File(file)),
                  "create table loaded (id long" + key +
                      ", quantity long, counter double, price decimal(10,2), rate currency, code text(12), name "
                      "text(40), place text(30), made datetime, changed datetime)");
        CloseIdleSessions();
    }
};

}  // namespace
}  // namespace varnel

int main(int argc, char** argv) {
    return varnel::RunBench<varnel::AccessSessionsBench>(argc, argv);
}
