#include "providers/sql/AccessSource.h"

#include <array>
#include <cstdint>
#include <vector>

#include "platform/Files.h"
#include "platform/InputFile.h"
#include "providers/access/AccessDatabase.h"
#include "providers/access/BlankDatabase.h"
#include "providers/access/FileHeader.h"
#include "providers/sql/TableStoreSession.h"

namespace varnel::sql {
namespace {

/// Asked of each who opens the file: the process has one store for all of them.
void CheckPasswordOf(const DataSource& source) {
    const InputFile file(source.storedPath);
    std::array<char, access::kFileHeaderSize> start{};
    const std::size_t count = file.ReadAt(0, start);
    const std::vector<std::uint8_t> bytes(start.begin(), start.begin() + static_cast<std::ptrdiff_t>(count));
    const access::FileHeader header = access::ParseFileHeader(bytes, file.State().size, source.storedPath);
    if (!header.encrypted) access::CheckPassword(header, source.databasePassword, source.storedPath);
}

}  // namespace

std::unique_ptr<ProviderSession> OpenAccessSession(const DataSource& source) {
    if (source.createWhenMissing && !FileExists(source.storedPath)) access::CreateBlankDatabase(source.storedPath);
    CheckPasswordOf(source);
    auto store = FindOrOpenStore(source.storedPath, "access", [&] {
        return std::make_unique<access::AccessDatabase>(source.storedPath,
                                                        access::AccessOptions{source.databasePassword, false});
    });
    return std::make_unique<TableStoreSession>(std::move(store), kJetDialect, source.readOnly);
}

}  // namespace varnel::sql
