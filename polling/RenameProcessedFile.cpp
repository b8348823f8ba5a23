#include "polling/RenameProcessedFile.h"

#include "ado/types/ValueText.h"
#include "app/shared/RunTally.h"
#include "app/shared/SessionLog.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "repository/model/SessionModel.h"

namespace varnel {

void RenameProcessedFile(const std::string& PolledName) {
    std::string path = SessionDef.FolderName;
    if (!path.ends_with('\\')) path += '\\';
    path += PolledName;
    const std::string newPath = path + "." + SessionDef.FRename + "_On_" + FileStamp(Now());
    try {
        RenameFile(path, newPath);
    } catch (const Error& error) {
        ++Tally.failures;
        const std::string message = "Unable to Rename File:" + PolledName + "\r\n" + error.what();
        LogAndShow(message, message);
    }
}

}  // namespace varnel
