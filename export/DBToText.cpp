#include "export/DBToText.h"

#include "app/shared/SessionLog.h"
#include "export/ExportRun.h"
#include "platform/Error.h"
#include "repository/model/SessionModel.h"

namespace varnel {

void ExportToText(const std::string& logFileName) {
    if (SessionDef.SourceDBName == "TEXT") return ExportTextToText(logFileName);
    ExportRun(ExportKind::FromDatabase, logFileName).Run();
}

void ExportTextToText(const std::string& logFileName) {
    ExportRun(ExportKind::FromText, logFileName).Run();
}

void WriteExportLog(const std::string& logFile, std::string_view msg) {
    try {
        if (msg == "VRCLOSE" && !logFile.empty()) {
            CloseLog();
        } else {
            WriteLog(logFile, msg);
        }
    } catch (const Error&) {  // an export goes on without its log
    }
}

}  // namespace varnel
