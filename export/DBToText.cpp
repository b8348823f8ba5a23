#include "export/DBToText.h"

#include "platform/Error.h"

namespace varnel {

void ExportToText(const std::string& /*logFileName*/) {
    throw Error(ErrorKind::NotSupported, "TEXT",
                "This version of Varnel does not write text files yet (target kind TEXT). Nothing was exported.");
}

}  // namespace varnel
