#include "tools/repository/OpenRepository.h"

#include <array>
#include <string_view>

#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/InputFile.h"

namespace varnel::admin {

std::string QuotedValue(const std::string& value) {
    std::string quoted = "\"";
    for (const char c : value) quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + "\"";
}

RepositoryForm RepositoryFormOf(const std::string& file) {
    std::array<char, 6> start{};
    const std::size_t count = InputFile(file).ReadAt(0, start);
    return std::string_view(start.data(), count) == "SQLite" ? RepositoryForm::Sqlite : RepositoryForm::Access;
}

Connection MakeRepositoryFile(const std::string& file, RepositoryForm form) {
    if (FileExists(file))
        throw Error(ErrorKind::Misuse, file, file + " exists already and is left as it is; name another file");
    const std::string provider = form == RepositoryForm::Access ? "Microsoft.Jet.OLEDB.4.0" : "SQLite";
    Connection repository;
    repository.Open("Provider=" + provider + ";Data Source=" + QuotedValue(file) + ";Mode=ReadWriteCreate");
    return repository;
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
