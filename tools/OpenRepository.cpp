#include "tools/OpenRepository.h"

#include "platform/Error.h"
#include "platform/Files.h"

namespace varnel::admin {

std::string QuotedValue(const std::string& value) {
    std::string quoted = "\"";
    for (const char c : value) quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + "\"";
}

Connection OpenRepository(const std::string& file) {
    if (!FileExists(file))
        throw Error(ErrorKind::Io, file,
                    "there is no repository " + file + "; make one with: varnel-admin new " + file +
                        ", or name another one with --repository");
    Connection repository;
    repository.Open("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + QuotedValue(file));
    return repository;
}

}  // namespace varnel::admin
