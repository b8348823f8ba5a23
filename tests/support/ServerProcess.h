// Servers that tests start: a program found, a port chosen, a process that dies with the test.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace varnel {

/// Where a program lies in PATH or the folders of servers; "" when it is nowhere.
std::string FindProgram(const std::string& name);
/// A port of the loopback address that nobody listens on at this moment. Throws std::runtime_error.
int FreePort();
/// Starts a program by its path; its output goes to the file. Throws std::runtime_error.
pid_t StartProgram(const std::vector<std::string>& words, const std::string& outputFile);

}  // namespace varnel
