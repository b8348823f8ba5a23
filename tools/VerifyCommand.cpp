#include "tools/VerifyCommand.h"

#include <cstdio>

#include "providers/VerifyFile.h"

namespace varnel::admin {

bool VerifyCommand(const std::string& file, const std::string& password) {
    const FileReport report = VerifyFile(file, password);
    for (const std::string& finding : report.findings) std::printf("%s\n", finding.c_str());
    for (const std::string& note : report.notes) std::printf("note: %s\n", note.c_str());
    const std::size_t count = report.findings.size();
    const std::string outcome = count == 0 ? "sound" : std::to_string(count) + (count == 1 ? " finding" : " findings");
    std::printf("%s: %s (%s)\n", file.c_str(), outcome.c_str(), report.extent.c_str());
    return count == 0;
}

}  // namespace varnel::admin
