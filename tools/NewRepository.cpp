#include "ado/Ado.h"
#include "tools/OpenRepository.h"
#include "tools/Repository.h"
#include "tools/RepositoryTables.h"

namespace varnel::admin {

void NewRepository(const std::string& file, RepositoryForm form) {
    Connection repository = MakeRepositoryFile(file, form);
    for (const RepositoryTable& table : kRepositoryTables) repository.Execute(CreateTableStatement(table));
    repository.Close();
}

}  // namespace varnel::admin
