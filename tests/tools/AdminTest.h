// Tests that run the built varnel-admin as a user would, in a folder of their own.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace varnel {

/// How a program ended and what it wrote.
struct ProgramResult {
    int status = -1;
    std::string out, err;
};

/// Runs a program in folder to its end.
ProgramResult RunIn(const std::string& folder, const std::string& program, const std::vector<std::string>& arguments);

class AdminTest : public testing::Test {
protected:
    AdminTest();
    ~AdminTest() override;

    const std::string& Folder() const { return folder_; }
    void WriteFile(const std::string& name, const std::string& text) const;
    std::string Bytes(const std::string& name) const;
    ProgramResult Admin(const std::vector<std::string>& arguments) const;
    /// The standard output of a call that must succeed.
    std::string Output(const std::vector<std::string>& arguments) const;
    /// Runs SQL on a database file of the folder, a SQLite one made when it is missing; rows as CSV.
    std::string Sql(const std::string& file, const std::string& statement) const;
    /// Makes "vrrepo.mdb" and imports a session file of this text into it.
    ProgramResult Import(const std::string& sessionFile, const std::vector<std::string>& options = {}) const;

private:
    std::string folder_;
};

}  // namespace varnel
