// SQL over files: the provider of every data source that is a file or a folder. SQLite plans and executes.
// The data sources are Access databases, FoxPro tables, SQLite database files (the bytes of a file decide, whatever the
// string names) and folders of text files.
#pragma once

#include "ado/types/Provider.h"

namespace varnel {

class SqlProvider : public Provider {
public:
    bool Accepts(const ConnectionString& text) const override;
    /// Throws Error: a missing file, or a file of another format.
    std::unique_ptr<ProviderSession> Open(const ConnectionString& text) const override;
};

}  // namespace varnel
