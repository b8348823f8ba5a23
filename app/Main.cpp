#include "app/Main.h"

#include "ado/SessionLease.h"
#include "ado/types/ConnectionString.h"
#include "app/CommandLine.h"
#include "app/RunSession.h"
#include "app/flags/SharedFlags.h"
#include "app/shared/RunTally.h"
#include "repository/model/SessionModel.h"
#include "ui/OpenForm.h"
#include "ui/ProgressForm.h"

namespace varnel {

namespace {

void ShowProgressForm() {
    UseProgressForm(OpenForm(&CancelRequested));
    Form14().SetSrcDestLabel("Source DB:" + SessionDef.SourceDBName + " Target DB:" + SessionDef.TargetDBName);
}

}  // namespace

int Main(std::string_view commandTail) {
    constexpr int kMaxArgs = 3;
    const auto words = GetCommandLine(commandTail, kMaxArgs);
    const auto sessionNumber = ParseSessionNumber(words[1]);
    if (!sessionNumber || *sessionNumber == 0) return 0;

    ShowOutput = EqualNoCase(TrimBlanks(words[2]), "showoutput");
    if (ShowOutput) ShowProgressForm();
    RunSession(*sessionNumber);
    const int status = ExitStatus(Tally);
    CloseIdleSessions();
    Form14().StayUntilClosed();
    UseProgressForm(nullptr);
    return status;
}

}  // namespace varnel
