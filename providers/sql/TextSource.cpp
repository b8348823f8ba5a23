#include "providers/sql/TextSource.h"

#include "providers/sql/TableStoreSession.h"
#include "providers/text/TextDatabase.h"

namespace varnel::sql {

std::unique_ptr<ProviderSession> OpenTextSession(const DataSource& source) {
    const std::string options = "text;" + source.extendedProperties;
    auto store = FindOrOpenStore(source.storedPath, options, [&] {
        return std::make_unique<text::TextDatabase>(source.storedPath, source.extendedProperties);
    });
    return std::make_unique<TableStoreSession>(std::move(store), kJetDialect, source.readOnly);
}

}  // namespace varnel::sql
