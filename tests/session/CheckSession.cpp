#include "tests/session/CheckSession.h"

#include <filesystem>
#include <sstream>

#include "ado/SessionLease.h"

namespace varnel {
namespace {

/// Every file and folder with its bytes and the time of its last change: a file that came and went shows in its folder.
std::map<std::string, std::string> WholeState(const std::string& folder) {
    std::map<std::string, std::string> state = Snapshot(folder);
    for (auto& [name, bytes] : state) bytes += " file";
    state["."];
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_symlink()) continue;
        const auto time = entry.last_write_time().time_since_epoch().count();
        state[std::filesystem::relative(entry.path(), folder)] += " " + std::to_string(time);
    }
    state["."] += std::to_string(std::filesystem::last_write_time(folder).time_since_epoch().count());
    return state;
}

}  // namespace

CheckSessionTest::CheckSessionTest() {
    std::filesystem::create_symlink(VARNEL_ADMIN, Path("varnel-admin"));
    Sql("source.db", {"create table SRC (ID INTEGER, NAME VARCHAR(50), AMOUNT CURRENCY, MADE DATETIME, FLAG YESNO, "
                      "NOTE MEMO, PIC LONGBINARY)",
                      "insert into SRC values (1, 'Smith', 12.5, '2003-07-15 13:05:09', 1, 'a', NULL)",
                      "insert into SRC values (123456789, 'Jones', 99999.25, '1899-01-01 00:00:00', 0, 'b', NULL)"});
    session_.tables = {{"SRC",
                        "OUTROWS",
                        {{"ID", "Integer", 11, 0, "ID", "Long"}, {"NAME", "VarWchar", 50, 0, "NAME", "Text"}},
                        false,
                        "append"}};
}

void CheckSessionTest::Sql(const std::string& file, const std::vector<std::string>& statements) const {
    NativeSqlite(Path(file)).Run(statements);
}

void CheckSessionTest::Check(const std::vector<std::string>& options, const std::string& session) {
    CloseIdleSessions();
    std::vector<std::string> arguments{"check", session, "--repository", Path("vrrepo.mdb")};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const auto before = WholeState(folder_.Path());
    std::filesystem::remove(output_.File("report.txt"));
    RunningProgram program(Path("varnel-admin"), arguments, folder_.Path(), output_.File("report.txt"));
    checkStatus_ = program.Wait();
    report_ = ReadBytes(output_.File("report.txt"));
    EXPECT_EQ(Changed(before, WholeState(folder_.Path())), "") << report_;
}

void CheckSessionTest::ExpectFinding(const std::vector<std::string>& parts, const std::string& remedy) const {
    std::istringstream lines(report_);
    std::string line, next;
    while (std::getline(lines, line)) {
        const auto isIn = [&](const std::string& part) { return line.find(part) != std::string::npos; };
        if (!std::all_of(parts.begin(), parts.end(), isIn)) continue;
        std::getline(lines, next);
        EXPECT_NE(next.find(remedy), std::string::npos) << "the remedy is " << next << "\n" << report_;
        return;
    }
    ADD_FAILURE() << "nothing says " << parts.back() << "\n" << report_;
}

}  // namespace varnel
