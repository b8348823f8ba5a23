// An installation of its own for every test: a folder with the program and a repository, sessions run by the program.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/session/NativeTables.h"
#include "tests/support/MariaDbServer.h"
#include "tests/support/RunProgram.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestRepository.h"

namespace varnel {

/// Hands the data layer its providers, for the repositories that tests make. Built before TestRepository.
struct ProvidersReady {
    ProvidersReady();
};

class SessionTest : public testing::Test {
protected:
    SessionTest();
    /// No file but the repository may hold one of the passwords that the test used.
    void TearDown() override;

    std::string Path(const std::string& name) const { return folder_.Path() + "/" + name; }
    std::string Content(const std::string& name) const;
    /// Adds session_ to the repository, runs it and keeps what it wrote. Returns the exit status.
    int Run();
    /// The same for a session that is in the repository.
    int RunStored(int id);
    /// Starts a session that is in the repository and goes on.
    std::unique_ptr<RunningProgram> Start(int id = 1);
    /// Waits for the end of a started session and keeps what it wrote. Returns the exit status.
    int End(RunningProgram& program);

    /// From the session's row: "recorded, no error", "recorded, error" or "not recorded".
    std::string Outcome(int id = 1);
    /// How often part stands in log_.
    int InLog(const std::string& part) const;
    bool LogIsClosed() const;
    /// The first failure that the log or the error log tells of, for a message.
    std::string FirstFailure() const;

    /// The one server of this test program, started when it is first asked for.
    static MariaDbServer& Server();
    /// A table of the server that does not exist before the test, nor after it.
    std::string ServerTable(const std::string& name);

    ProvidersReady providers_;
    TempFolder folder_;
    TestRepository repository_;
    TestSession session_;
    std::vector<std::string> secrets_;
    std::string log_, errorLog_, output_;
};

/// Waits until condition holds, asking again and again, at most for so many seconds. Returns whether it held.
bool Eventually(const std::function<bool()>& condition, int seconds = 30);

/// Every file of a folder with its bytes, subfolders included; for telling that nothing was touched.
std::map<std::string, std::string> Snapshot(const std::string& folder);
/// The names, sorted, of the files that came, went or changed between two snapshots; each followed by a blank.
std::string Changed(const std::map<std::string, std::string>& before, const std::map<std::string, std::string>& after);

/// Drops a table, its name as SQL writes it, where there is one.
void Forget(NativeDatabase& database, const std::string& table);
/// A table of numbers 1 to count, "ID" and "NAME", the name followed by padding characters.
void MakeNumbered(NativeDatabase& database, const std::string& table, int count, int padding = 0);

}  // namespace varnel
