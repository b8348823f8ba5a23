#include "providers/mysql/MySqlProvider.h"

#include "providers/mysql/MySqlOptions.h"
#include "providers/mysql/MySqlSession.h"

namespace varnel {

bool MySqlProvider::Accepts(const ConnectionString& text) const {
    return mysql::NamesMySql(text);
}

std::unique_ptr<ProviderSession> MySqlProvider::Open(const ConnectionString& text) const {
    return std::make_unique<mysql::MySqlSession>(mysql::ReadMySqlOptions(text));
}

}  // namespace varnel
