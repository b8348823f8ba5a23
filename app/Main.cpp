#include "app/Main.h"

#include "ado/types/ConnectionString.h"
#include "app/CommandLine.h"
#include "app/RunSession.h"
#include "app/flags/SharedFlags.h"
#include "app/shared/RunTally.h"
#include "repository/model/SessionModel.h"
#include "ui/ProgressForm.h"

namespace varnel {

int Main(std::string_view commandTail) {
    constexpr int kMaxArgs = 3;
    const auto words = GetCommandLine(commandTail, kMaxArgs);
    const auto sessionNumber = ParseSessionNumber(words[1]);
    if (!sessionNumber || *sessionNumber == 0) return 0;

    ShowOutput = EqualNoCase(TrimBlanks(words[2]), "showoutput");
    if (ShowOutput) {
        Form14().SetSrcDestLabel("Source DB:" + SessionDef.SourceDBName + " Target DB:" + SessionDef.TargetDBName);
    }
    RunSession(*sessionNumber);
    return ExitStatus(Tally);
}

}  // namespace varnel
