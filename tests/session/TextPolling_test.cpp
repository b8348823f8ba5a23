// A polled folder: what is loaded is renamed, what is not keeps its name, and nothing is lost or loaded twice.
#include <csignal>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <functional>
#include <iterator>
#include <regex>
#include <set>

#include "tests/session/TextSession.h"

namespace varnel {
namespace {

/// The end of a renamed file's name at a moment: "18_Nov_26_16_5_09".
std::string StampOf(std::time_t moment) {
    static const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    tm local{};
    localtime_r(&moment, &local);
    char text[64];
    std::snprintf(text, sizeof text, "%02d_%s_%02d_%02d_%d_%02d", local.tm_mday, kMonths[local.tm_mon],
                  local.tm_year % 100, local.tm_hour, local.tm_min, local.tm_sec);
    return text;
}

class TextPollingTest : public TextSessionTest {
protected:
    TextPollingTest() : target_(Path("target.db")) {
        target_.Run({"create table goods (ID Long, NAME Text(50))"});
        PollInto({"*.csv", "goods", {{"ID", "Integer", 11}, {"NAME", "VarWchar", 50}}, true, "append"});
    }
    void TargetIsMySql() {
        session_.targetKind = "MySQL";
        session_.targetConnection = Server().ConnectionString();
        ServerTable("goods");
        Server().Run({"create table shop.goods (ID int, NAME varchar(50))"});
    }
    static std::string File(int number) {
        return "ID,NAME\r\n" + std::to_string(number) + ",\"number " + std::to_string(number) + "\"\r\n";
    }
    std::string Loaded() {
        return target_.Ask("select coalesce(group_concat(ID, ' '), '') from (select ID from goods order by ID)");
    }

    NativeSqlite target_;
};

TEST_F(TextPollingTest, AThousandFilesAreLoadedOnceAndRenamed) {
    constexpr int kFiles = 1000;
    for (int k = 1; k <= kFiles; ++k) PutFile("drop/file" + std::to_string(k) + ".csv", File(k));
    PutFile("drop/readme.txt", "no data");
    PutFile("drop/.hidden.csv", File(0));
    const std::time_t before = std::time(nullptr);
    ASSERT_EQ(Run(), 0) << FirstFailure();
    std::set<std::string> stamps;
    for (std::time_t moment = before; moment <= std::time(nullptr); ++moment) stamps.insert(StampOf(moment));

    EXPECT_EQ(
        target_.Ask("select count(*) || ' ' || count(distinct ID) || ' ' || sum(NAME = 'number ' || ID) from goods"),
        "1000 1000 1000");
    EXPECT_EQ(InLog(" 1 Rows Loaded\r\n"), kFiles);
    static const std::regex renamed("(file[0-9]+\\.csv)\\.done_On_(.*)");
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(Path("drop"))) {
        const std::string name = entry.path().filename();
        std::smatch parts;
        if (!std::regex_match(name, parts, renamed)) continue;
        EXPECT_EQ(stamps.count(parts[2]), 1U) << name;
        EXPECT_EQ(ReadBytes(entry.path()), File(std::stoi(parts.str(1).substr(4)))) << name;
        files.insert(parts[1]);
    }
    EXPECT_EQ(files.size(), static_cast<std::size_t>(kFiles));
    EXPECT_TRUE(Has("drop/readme.txt") && Has("drop/.hidden.csv"));
    EXPECT_EQ(Outcome(), "recorded, no error");

    const auto folder = Snapshot(Path("drop"));
    EXPECT_EQ(RunStored(1), 0) << FirstFailure();
    EXPECT_EQ(Changed(folder, Snapshot(Path("drop"))), "");
    EXPECT_EQ(target_.Count("goods"), kFiles);
}

TEST_F(TextPollingTest, TheFolderGetsItsSchemaAndItIsFollowed) {
    session_.sourceText = {"|", "SQ", false};
    session_.tables[0].columns = {{"F1", "Integer", 11, 0, "ID"}, {"F2", "VarWchar", 50, 0, "NAME"}};
    PutFile("drop/b.csv", "2|'two|2'\n");
    PutFile("drop/A.csv", "1|it''s, \"one\"\n");
    PutFile("drop/Schema.ini", "[b.csv]\r\nFormat=TabDelimited\r\nCol1=X Long\r\n");
    EXPECT_EQ(Run(), 0) << FirstFailure();
    EXPECT_EQ(
        Content("drop/Schema.ini"),
        "\r\n\r\n[A.csv]\r\nFormat=Delimited(|)\r\nColNameHeader=False\r\nTextDelimiter=\"'\"\r\nMaxScanRows=0\r\n"
        "\r\n\r\n[b.csv]\r\nFormat=Delimited(|)\r\nColNameHeader=False\r\nTextDelimiter=\"'\"\r\nMaxScanRows=0\r\n");
    EXPECT_EQ(target_.Ask("select group_concat(ID || '=' || NAME, ';') from (select * from goods order by ID)"),
              "1=it''s, \"one\";2=two|2");
}

/// A file between two good ones that cannot be loaded; the session's target decides the way of writing.
struct BadFile {
    const char* name;
    std::function<void(const std::string& folder)> put;  ///< makes folder/b.csv
    const char* said;                                    ///< in the log, with every failure
    int failures;
};

void PrintTo(const BadFile& bad, std::ostream* out) {
    *out << bad.name;
}

std::string ManyTexts() {
    std::string text = "ID,NAME\n";
    for (int k = 0; k < 60; ++k) text += "x" + std::to_string(k) + ",\"no number\"\n";
    return text;
}

const BadFile kBadFiles[] = {
    // The first file gets its new name before the second one is opened.
    {"Vanished", [](const std::string& folder) { std::filesystem::create_symlink("a.csv", folder + "/b.csv"); },
     "cannot find the input table or query 'b.csv'", 2},
    // An ordinary file that nobody can read, root neither.
    {"Unreadable",
     [](const std::string& folder) { std::filesystem::create_symlink("/proc/self/mem", folder + "/b.csv"); },
     "Device I/O error", 2},
    {"OtherColumns", [](const std::string& folder) { WriteBytes(folder + "/b.csv", "ID,TITLE\n2,two\n"); },
     "There is no column 'NAME' in table 'b.csv'", 1},
    {"Empty", [](const std::string& folder) { WriteBytes(folder + "/b.csv", ""); }, "empty text file: 'b.csv'", 2},
    {"TextsAsNumbers", [](const std::string& folder) { WriteBytes(folder + "/b.csv", ManyTexts()); },
     "Error Loading Row", 51},
};

class BadFileTest : public TextPollingTest, public testing::WithParamInterface<BadFile> {
protected:
    void Fill() {
        PutFile("drop/a.csv", File(1));
        GetParam().put(Path("drop"));
        PutFile("drop/c.csv", File(3));
    }
    void ExpectTheOthersLoaded(const std::string& abort) {
        EXPECT_EQ(InLog("About to Insert Rows"), 3);
        EXPECT_EQ(InLog(abort), 1) << log_;
        EXPECT_EQ(InLog(GetParam().said), GetParam().failures) << log_;
        EXPECT_EQ(InLog("Error Loading Row\r\n"), GetParam().failures) << log_;
        EXPECT_TRUE(Has("drop/b.csv") || std::filesystem::is_symlink(Path("drop/b.csv"))) << "b.csv lost its name";
        EXPECT_EQ(Names("drop", "b"), "b.csv ");
        EXPECT_FALSE(Has("drop/a.csv") || Has("drop/c.csv"));
        EXPECT_EQ(InLog("Unable to Rename"), 0);
        EXPECT_TRUE(LogIsClosed());
    }
};

TEST_P(BadFileTest, IsKeptAndSaid) {
    Fill();
    EXPECT_EQ(Run(), 1);
    ExpectTheOthersLoaded("Aborting Loading Rows for Table :b.csv As Errors Exceeded 50 Allowed\r\n");
    EXPECT_EQ(InLog("\r\nif Folder Polling is selected as source then, the files must be of same structure\r\n"),
              GetParam().failures);
    EXPECT_EQ(Loaded(), "1 3");
}

class BadFileForBatchesTest : public BadFileTest {};

TEST_P(BadFileForBatchesTest, IsKeptAndSaid) {
    TargetIsMySql();
    Fill();
    EXPECT_EQ(Run(), 1);
    ExpectTheOthersLoaded("Aborting Loading Rows for Table :b.csv As Errors Exceeded Max Allowed\r\n");
    EXPECT_EQ(NativeMySql(Server()).Ask("select group_concat(ID order by ID) from goods"), "1,3");
}

INSTANTIATE_TEST_SUITE_P(Files, BadFileTest, testing::ValuesIn(kBadFiles),
                         [](const auto& bad) { return std::string(bad.param.name); });
// All but the last: a batch that is refused does not end its table.
INSTANTIATE_TEST_SUITE_P(Files, BadFileForBatchesTest,
                         testing::ValuesIn(std::begin(kBadFiles), std::end(kBadFiles) - 1),
                         [](const auto& bad) { return std::string(bad.param.name); });

TEST_F(TextPollingTest, AFileWhoseNewNameIsTakenKeepsItsName) {
    PutFile("drop/a.csv", File(1));
    PutFile("drop/b.csv", File(2));
    const std::time_t now = std::time(nullptr);
    for (std::time_t moment = now; moment < now + 120; ++moment)
        PutFile("drop/a.csv.done_On_" + StampOf(moment), "kept");
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(InLog("Unable to Rename File:a.csv\r\nFile already exists"), 1) << log_;
    EXPECT_EQ(Content("drop/a.csv"), File(1));
    EXPECT_FALSE(Has("drop/b.csv"));
    for (std::time_t moment = now; moment < now + 120; ++moment) {
        EXPECT_EQ(Content("drop/a.csv.done_On_" + StampOf(moment)), "kept");
    }
    EXPECT_EQ(Loaded(), "1 2");
    EXPECT_TRUE(LogIsClosed());
}

TEST_F(TextPollingTest, WithoutATemplateTheRunEndsInOrder) {
    session_.tables.clear();
    PutFile("drop/a.csv", File(1));
    EXPECT_EQ(Run(), 2);
    EXPECT_TRUE(errorLog_.starts_with("Error Occurred in Running Session ID:1\r\n")) << errorLog_;
    EXPECT_GT(errorLog_.size(), std::string("Error Occurred in Running Session ID:1\r\n\r\n\r\n").size());
    EXPECT_EQ(output_, "");
    EXPECT_EQ(Names("drop"), "a.csv ");
    EXPECT_EQ(Outcome(), "not recorded");
}

TEST_F(TextPollingTest, AMissingFolderEndsTheRunInOrder) {
    session_.folder = Path("nowhere");
    EXPECT_EQ(Run(), 2);
    EXPECT_NE(errorLog_.find("Path not found"), std::string::npos) << errorLog_;
    EXPECT_EQ(Outcome(), "not recorded");
}

TEST_F(TextPollingTest, ACancelLeavesTheFileAtHandUnrenamed) {
    PutFile("drop/a.csv", File(1));
    std::string large = "ID,NAME\r\n";
    for (int k = 1; k <= 1'000'000; ++k) large += std::to_string(k) + ",\"a row of many\"\r\n";
    PutFile("drop/b.csv", large);
    PutFile("drop/c.csv", File(3));
    repository_.Add(session_);
    const auto program = Start();
    ASSERT_TRUE(program->WaitUntil([this] { return !Has("drop/a.csv"); }));
    program->Signal(SIGTERM);
    EXPECT_EQ(End(*program), 3) << log_;
    EXPECT_TRUE(Has("drop/b.csv") && Has("drop/c.csv"));
    EXPECT_EQ(InLog("About to Insert Rows"), 2);
    EXPECT_LT(target_.Count("goods"), 1'000'001) << "the file was loaded before the signal came";
    EXPECT_TRUE(LogIsClosed());
}

TEST_F(TextPollingTest, IntoTextAllFilesGoToOnePathAndNoneIsRenamed) {
    TargetIsText({",", "DQ", true, "DELIMITED"});
    session_.tables[0].target = Path("out/all.txt");
    PutFile("drop/a.csv", File(1));
    PutFile("drop/b.csv", "ID,NAME\n4,four\n5,five\n");
    PutFile("drop/c.csv", "ID,NAME\n5,five\n");
    EXPECT_EQ(Run(), 0) << log_;
    ExpectGolden("polled_last.txt", "out/all.txt");
    EXPECT_EQ(Names("drop"), "a.csv b.csv c.csv ");
    EXPECT_EQ(InLog("2 Rows Loaded\r\n"), 1) << log_;
    EXPECT_EQ(InLog("1 Rows Loaded\r\n"), 2) << log_;
}

}  // namespace
}  // namespace varnel
