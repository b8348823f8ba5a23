#include "tools/output/Printing.h"

#include <cerrno>
#include <cstdio>

#include "platform/Error.h"
#include "platform/Files.h"

namespace varnel::admin {

void Print(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
        throw Error(ErrorKind::Io, "", FileErrorText(errno, "standard output"));
}

void FinishPrinting() {
    if (std::fflush(stdout) != 0) throw Error(ErrorKind::Io, "", FileErrorText(errno, "standard output"));
}

}  // namespace varnel::admin
