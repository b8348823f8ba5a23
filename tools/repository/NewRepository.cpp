#include "ado/Ado.h"
#include "tools/repository/OpenRepository.h"
#include "tools/repository/Repository.h"
#include "tools/repository/RepositoryTables.h"

namespace varnel::admin {

void NewRepository(const std::string& file, RepositoryForm form) {
    Connection repository = MakeRepositoryFile(file, form);
    for (const RepositoryTable& table : kRepositoryTables) repository.Execute(CreateTableStatement(table));
    repository.Close();
}

}  // namespace varnel::admin
