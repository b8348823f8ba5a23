#include "providers/odbc/OdbcProvider.h"

#include "providers/odbc/ConnectionText.h"
#include "providers/odbc/OdbcSession.h"

namespace varnel {

bool OdbcProvider::Accepts(const ConnectionString& text) const {
    return odbc::NamesOdbc(text);
}

std::unique_ptr<ProviderSession> OdbcProvider::Open(const ConnectionString& text) const {
    return std::make_unique<odbc::OdbcSession>(text);
}

}  // namespace varnel
