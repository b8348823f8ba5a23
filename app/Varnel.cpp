// The program: puts the pieces together that only it may know, and starts.
#include <string>

#include "ado/SessionLease.h"
#include "app/Main.h"
#include "platform/Signals.h"
#include "platform/StoredPath.h"
#include "providers/ProviderList.h"

int main(int argc, char** argv) {
    using namespace varnel;
    SetApplicationFolder(FolderOfProgram(argc > 0 ? argv[0] : ""));
    SetProviders(AllProviders());
    NoteCancelSignals();
    std::string commandTail;
    for (int k = 1; k < argc; ++k) commandTail.append(k > 1 ? " " : "").append(argv[k]);
    return Main(commandTail);
}
