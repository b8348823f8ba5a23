// Sessions that varnel-admin check looks at before the real program runs them.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/session/TextSession.h"

namespace varnel {

class CheckSessionTest : public TextSessionTest {
public:
    CheckSessionTest();

    /// Runs "varnel-admin check 1" on the stored session; keeps what it prints in report_, its status in checkStatus_.
    /// Nothing in the installation may have changed afterwards, not even a time.
    void Check(const std::vector<std::string>& options = {}, const std::string& session = "1");
    /// The report has a line that holds all of these texts, the remedy being the line below.
    void ExpectFinding(const std::vector<std::string>& parts, const std::string& remedy) const;
    /// Runs statements on a SQLite file of the installation, made when it is missing.
    void Sql(const std::string& file, const std::vector<std::string>& statements) const;

    using SessionTest::errorLog_;
    using SessionTest::folder_;
    using SessionTest::InLog;
    using SessionTest::log_;
    using SessionTest::Outcome;
    using SessionTest::Path;
    using SessionTest::repository_;
    using SessionTest::RunStored;
    using SessionTest::secrets_;
    using SessionTest::Server;
    using SessionTest::ServerTable;
    using SessionTest::session_;
    using TextSessionTest::PollInto;
    using TextSessionTest::PutFile;
    using TextSessionTest::TargetIsText;
    using TextSessionTest::TextConnection;

    std::string report_;
    int checkStatus_ = -1;

private:
    TempFolder output_;
};

}  // namespace varnel
