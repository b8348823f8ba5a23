#include "app/ErrorLog.h"

#include <cstdio>

#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/StoredPath.h"

namespace varnel {

void AppendToErrorLog(std::int16_t SessionID, const std::string& description) {
    const std::string lines =
        "Error Occurred in Running Session ID:" + std::to_string(SessionID) + "\r\n\r\n" + description + "\r\n";
    try {
        OutputFile log(ApplicationFolder() + "/Varnel.log", OutputFile::Mode::Append);
        log.Write(lines);
        log.Close();
    } catch (const Error& error) {
        std::fprintf(stderr, "varnel: %s\n%s", error.what(), lines.c_str());
    }
}

}  // namespace varnel
