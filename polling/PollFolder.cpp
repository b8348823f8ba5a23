#include "polling/PollFolder.h"

#include "platform/Error.h"

namespace varnel {

namespace {

[[noreturn]] void Refuse() {
    throw Error(ErrorKind::NotSupported, "TEXTPOLL",
                "This version of Varnel does not read polled folders yet (source kind TEXTPOLL). Nothing was loaded.");
}

}  // namespace

void PollFolderTables(std::int16_t /*SessionID*/) {
    Refuse();
}

void PollFolderColumns(std::int16_t /*SessionID*/, std::int16_t /*TabID*/, const std::string& /*TableName*/) {
    Refuse();
}

}  // namespace varnel
