#include "app/shared/SessionLog.h"

#include "ado/types/ValueText.h"
#include "app/flags/SharedFlags.h"
#include "platform/Clock.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "repository/model/SessionModel.h"
#include "ui/ProgressForm.h"

namespace varnel {

std::string EngineLogFile;

namespace {

/// The one log handle of the process.
OutputFile& TheLog() {
    static OutputFile log;
    return log;
}

void WriteLine(std::string_view line) {
    std::string bytes;
    bytes.reserve(line.size() + 2);
    bytes.append(line).append("\r\n");
    TheLog().Write(bytes);
}

void OpenLog(const std::string& path) {
    if (TheLog().IsOpen()) throw Error(ErrorKind::Io, path, "File already open: '" + path + "'");
    TheLog() = OutputFile(path, OutputFile::Mode::Append);
    WriteLine("Starting Session " + SessionDef.SessionName);
    WriteLine("");
    WriteLine("Start Time is :" + NowText());
    WriteLine("");
}

}  // namespace

void WriteLog(const std::string& LogFile, std::string_view Msg) {
    if (LogFile.empty()) return;
    if (Msg == "VROPEN") return OpenLog(LogFile);
    if (!TheLog().IsOpen()) throw Error(ErrorKind::Io, LogFile, "Bad file name or number: '" + LogFile + "'");
    WriteLine(Msg);
}

void CloseLog() {
    TheLog().Close();
}

std::string NowText() {
    return GeneralDate(NowToTheSecond());
}

void LogAndShow(std::string_view Log, std::string_view Window) {
    WriteLog(EngineLogFile, Log);
    if (ShowOutput) AppendWindowLine(Window);
}

}  // namespace varnel
