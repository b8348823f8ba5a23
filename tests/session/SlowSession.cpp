#include "tests/session/SlowSession.h"

#include <algorithm>
#include <filesystem>
#include <regex>

namespace varnel {

namespace {

const TestTextLayout kBareLines{",", "", false, "DELIMITED"};

std::int64_t Lines(const std::string& text) {
    return std::count(text.begin(), text.end(), '\n');
}

}  // namespace

void SlowSessionTest::Prepare(const Way& way, int rows) {
    const std::string count = std::to_string(rows);
    NativeSqlite(Path("source.db"))
        .Run({"create table numbers (ID int, NAME varchar(50))", "create table few (ID int, NAME varchar(50))",
              "with recursive n(i) as (select 1 union all select i+1 from n where i<200) insert into few select i, "
              "'one' from n",
              "with recursive n(i) as (select 1 union all select i+1 from n where i<" + count +
                  ") insert into numbers select i, 'row ' || i from n",
              "create view slow as select ID, NAME || substr((select count(*) from (with recursive c(x) as "
              "(select 1 union all select x+1 from c where x<4000) select x from c) where x+numbers.ID>0), 1, 0) as "
              "NAME from numbers"});
    session_.targetKind = way.targetKind;
    if (session_.targetKind == "MySQL") {
        session_.targetConnection = Server().ConnectionString();
        ServerTable("copy");
        ServerTable("never");
        target_ = std::make_unique<NativeMySql>(Server());
    } else if (session_.targetKind == "TEXT") {
        TargetIsText(kBareLines);
    } else {
        target_ = std::make_unique<NativeSqlite>(Path("target.db"));
    }
    const bool text = session_.targetKind == "TEXT";
    for (const std::string name : {"copy", "never"}) {
        if (target_) target_->Run({"create table `" + name + "` (ID int, NAME varchar(50))"});
        session_.tables.push_back({name == "copy" ? "slow" : "few",
                                   text ? Path("out/" + name) : name,
                                   {{"ID", "Integer", 11}, {"NAME", "VarWchar", 50}},
                                   true,
                                   "append"});
    }
    repository_.Add(session_);
}

std::unique_ptr<RunningProgram> SlowSessionTest::StartShown(const std::string& program) {
    return std::make_unique<RunningProgram>(Path(program), std::vector<std::string>{"1", "showoutput"}, folder_.Path(),
                                            Path("output.txt"));
}

bool SlowSessionTest::LogHas(const std::string& text) const {
    return Has("run.log") && Content("run.log").find(text) != std::string::npos;
}

std::int64_t SlowSessionTest::Copied() {
    return target_ ? target_->Count("`copy`") : Lines(Content("out/copy"));
}

bool SlowSessionTest::NeverWasLoaded() {
    return target_ ? target_->Count("never") == 0 : !Has("out/never");
}

std::int64_t SlowSessionTest::LoadedByTheLog() const {
    static const std::regex line("([0-9]+) Rows Loaded\r\n");
    std::smatch found;
    return std::regex_search(log_, found, line) ? std::stoll(found[1]) : -1;
}

void SlowSessionTest::ExpectCancelledInCopy(int rows) {
    EXPECT_GT(LoadedByTheLog(), 0) << log_;
    EXPECT_LT(LoadedByTheLog(), rows);
    // The export has written the row at which it was stopped, but does not count it.
    EXPECT_EQ(Copied(), LoadedByTheLog() + (target_ ? 0 : 1));
    EXPECT_TRUE(NeverWasLoaded());
    EXPECT_TRUE(IsOver()) << log_;
    EXPECT_EQ(InLog("Error"), 0) << log_;
    EXPECT_EQ(Outcome(), "recorded, no error");
    EXPECT_EQ(errorLog_, "");
}

void SlowSessionTest::ExpectWhole(int rows) {
    EXPECT_EQ(Copied(), rows) << log_;
    EXPECT_FALSE(NeverWasLoaded());
    EXPECT_TRUE(IsOver()) << log_;
    EXPECT_EQ(Outcome(), "recorded, no error");
}

}  // namespace varnel
