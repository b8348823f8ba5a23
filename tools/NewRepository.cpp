#include "ado/Ado.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "tools/OpenRepository.h"
#include "tools/Repository.h"
#include "tools/RepositoryTables.h"

namespace varnel::admin {

void NewRepository(const std::string& file) {
    if (FileExists(file))
        throw Error(ErrorKind::Misuse, file, file + " exists already and is left as it is; name another file");
    Connection repository;
    repository.Open("Provider=SQLite;Data Source=" + QuotedValue(file) + ";Mode=ReadWriteCreate");
    for (const RepositoryTable& table : kRepositoryTables) repository.Execute(CreateTableStatement(table));
    repository.Close();
}

}  // namespace varnel::admin
