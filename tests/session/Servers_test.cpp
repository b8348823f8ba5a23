// Rows that go to servers in arrays: a failure in the middle costs its row alone, and is told as when every row is sent
// by itself.
#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>

#include "ado/Ado.h"
#include "tests/session/ServerKinds.h"
#include "tests/session/SessionTest.h"

namespace varnel {
namespace {

constexpr int kRows = 2200;

enum Fault : std::uint8_t { TakenKey, TooWide, NoName };

struct BadRow {
    int id;
    Fault fault;
};
/// At the edges of arrays, side by side and alone; in the order of the rows.
constexpr BadRow kBadRows[] = {{1, TakenKey},    {7, TooWide},     {8, NoName},    {999, NoName},
                               {1000, TooWide},  {1001, TakenKey}, {1300, NoName}, {1301, TakenKey},
                               {1302, TakenKey}, {2000, TooWide},  {2001, NoName}, {2200, TakenKey}};

/// A server and its words for the faults; N stands for the row's key.
struct Refusals {
    const ServerKind* server;
    std::array<const char*, 3> words;
};
constexpr Refusals kRefusals[] = {
    {&kOracle, {"Duplicate entry 'N' for key", "Data too long for column 'NAME'", "Column 'NAME' cannot be null"}},
    {&kSqlServer,
     {"Violation of UNIQUE KEY constraint", "The text has 60 characters; 50 are allowed.",
      "Cannot insert the value NULL into column"}}};

void PrintTo(const Refusals& refusals, std::ostream* out) {
    *out << refusals.server->name;
}

class ArraysTest : public SessionTest, public testing::WithParamInterface<Refusals> {
protected:
    ArraysTest() : target_(OpenNative(*GetParam().server)) {
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) unsetenv(name);
        NativeSqlite source(Path("source.db"));
        MakeNumbered(source, "SRC", kRows);
        Forget(*target_, "OUTROWS");
        target_->Run({"create table OUTROWS (ID int not null primary key, NAME varchar(50) not null)"});
        for (const BadRow& bad : kBadRows) {
            const std::string id = std::to_string(bad.id);
            if (bad.fault == TakenKey) target_->Run({"insert into OUTROWS (ID, NAME) values (" + id + ",'old')"});
            if (bad.fault == TooWide) source.Run({"update SRC set NAME = printf('%.60c', 'x') where ID = " + id});
            if (bad.fault == NoName) source.Run({"update SRC set NAME = Null where ID = " + id});
        }
        session_.targetKind = GetParam().server->kind;
        session_.targetConnection = ConnectionTo(*GetParam().server);
        TestTable table{"SRC", "OUTROWS", {{"ID", "Integer", 11}, {"NAME", "VarWchar", 50}}, true, "append"};
        table.targetOwner = "dbo";
        session_.tables = {table};
        repository_.Add(session_);
        CloseIdleSessions();
    }
    /// Every bad row is told in its order and once: the head that its number gives, and then the server's words.
    static void ExpectAllTold(const std::string& text, const std::function<std::string(int)>& head) {
        std::size_t at = 0;
        for (const BadRow& bad : kBadRows) {
            at = text.find("Error Loading Row", at);
            ASSERT_NE(at, std::string::npos) << "row " << bad.id << " is missing in\n" << text;
            const std::size_t next = text.find("Error Loading Row", at + 1);
            const std::string told = text.substr(at, next - at);
            std::string words = GetParam().words[bad.fault];
            if (const auto key = words.find("'N'"); key != std::string::npos)
                words.replace(key + 1, 1, std::to_string(bad.id));
            EXPECT_TRUE(told.starts_with(head(bad.id))) << bad.id << ": " << told;
            EXPECT_NE(told.find(words), std::string::npos) << bad.id << ": " << told;
            at = next;
        }
        EXPECT_EQ(at, std::string::npos) << text;
    }
    void ExpectOnlyTheBadRowsMissing() {
        int taken = 0;
        for (const BadRow& bad : kBadRows) taken += bad.fault == TakenKey ? 1 : 0;
        const auto failed = static_cast<int>(std::size(kBadRows));
        EXPECT_EQ(InLog("Error Loading Row\r\n"), failed) << log_;
        EXPECT_EQ(InLog(" " + std::to_string(kRows - failed) + " Rows Loaded\r\n"), 1) << log_;
        EXPECT_EQ(target_->Count("OUTROWS"), kRows - failed + taken);
        EXPECT_EQ(target_->Count("OUTROWS where NAME='old'"), taken);
        EXPECT_TRUE(LogIsClosed());
    }

    std::unique_ptr<NativeDatabase> target_;
};

TEST_P(ArraysTest, FailuresAreToldInTheirOrder) {
    EXPECT_EQ(RunStored(1), 1) << FirstFailure();
    ExpectOnlyTheBadRowsMissing();
    ExpectAllTold(log_, [](int) { return "Error Loading Row\r\n"; });
}

TEST_P(ArraysTest, AndShownUnderTheirNumbers) {
    RunningProgram program(Path("varnel"), {"1", "showoutput"}, folder_.Path(), Path("output.txt"));
    EXPECT_EQ(End(program), 1) << FirstFailure();
    ExpectOnlyTheBadRowsMissing();
    ExpectAllTold(output_, [](int id) { return "Error Loading Row:" + std::to_string(id) + "\n0 "; });
}

INSTANTIATE_TEST_SUITE_P(Servers, ArraysTest, testing::ValuesIn(kRefusals),
                         [](const auto& refusals) { return std::string(refusals.param.server->name); });

}  // namespace
}  // namespace varnel
