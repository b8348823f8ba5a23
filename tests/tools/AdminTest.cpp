#include "tests/tools/AdminTest.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace varnel {
namespace {

std::string ReadFile(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

void SendTo(int descriptor, const std::string& path) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    if (file < 0 || dup2(file, descriptor) < 0) _exit(126);
}

}  // namespace

ProgramResult RunIn(const std::string& folder, const std::string& program, const std::vector<std::string>& arguments) {
    std::vector<char*> words{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);
    const std::string out = folder + "/.out", err = folder + "/.err";
    const pid_t child = fork();
    if (child == 0) {
        SendTo(STDOUT_FILENO, out);
        SendTo(STDERR_FILENO, err);
        if (chdir(folder.c_str()) != 0) _exit(126);
        execv(program.c_str(), words.data());
        _exit(127);
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child) return {};
    return {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), ReadFile(out), ReadFile(err)};
}

AdminTest::AdminTest() {
    std::string pattern = (std::filesystem::temp_directory_path() / "varnel-admin-XXXXXX").string();
    folder_ = mkdtemp(pattern.data()) ? pattern : "";
}

AdminTest::~AdminTest() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void AdminTest::WriteFile(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ + "/" + name, std::ios::binary) << text;
}

std::string AdminTest::Bytes(const std::string& name) const {
    return ReadFile(folder_ + "/" + name);
}

ProgramResult AdminTest::Admin(const std::vector<std::string>& arguments) const {
    return RunIn(folder_, VARNEL_ADMIN, arguments);
}

std::string AdminTest::Output(const std::vector<std::string>& arguments) const {
    const ProgramResult result = Admin(arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    return result.out;
}

std::string AdminTest::Sql(const std::string& file, const std::string& statement) const {
    return Output({"sql", "Provider=SQLite;Data Source=" + file + ";Mode=ReadWriteCreate", statement, "--csv"});
}

ProgramResult AdminTest::Import(const std::string& sessionFile, const std::vector<std::string>& options) const {
    if (!std::filesystem::exists(folder_ + "/vrrepo.mdb")) Output({"new", "vrrepo.mdb"});
    WriteFile("s.toml", sessionFile);
    std::vector<std::string> arguments{"import", "s.toml", "--repository", "vrrepo.mdb"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return Admin(arguments);
}

}  // namespace varnel
