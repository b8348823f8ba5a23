#include "providers/access/BlankDatabase.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <random>

#include "platform/Clock.h"
#include "platform/DiskFile.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "platform/StoredPath.h"
#include "providers/access/DefinitionWriter.h"
#include "providers/access/IndexImage.h"
#include "providers/access/IndexKey.h"
#include "providers/access/Layout.h"
#include "providers/access/RowBuilder.h"
#include "providers/access/RowPage.h"
#include "providers/access/StoreBytes.h"
#include "providers/access/SystemTables.h"
#include "providers/access/UsageMapWriter.h"

namespace varnel::access {
namespace {

constexpr std::size_t kPageSize = kJet4Layout.pageSize, kPages = 16, kSystemMaps = 31, kFreePagesFrom = 16;

// Accounts, as they stand in a file with this creation date: the two belong together.
constexpr std::uint8_t kCreationDate[] = {0x3E, 0x85, 0xD3, 0x3B, 0x3E, 0xAB, 0xE4, 0x40};
constexpr std::int32_t kCreationDay = 42'329;
constexpr std::string_view kAdmin = "\x64\x8B", kUsers = "\x65\x8B", kEngine = "\x65\x89", kCreator = "\x65\x8E";

// The header. Bytes 0x18 to 0x97 are stored under a mask, the key stream of a fixed RC4 key.
constexpr std::size_t kMaskAt = 0x18, kMaskBytes = 128, kCommitSlotsAt = 0xE00, kCommitSlots = 256;
constexpr std::uint8_t kMaskKey[] = {0xC7, 0xDA, 0x39, 0x6B};
constexpr std::uint32_t kEngineBuild = 9756;

void MaskHeader(std::span<std::uint8_t> bytes) {
    std::uint8_t state[256];
    for (unsigned i = 0; i < 256; ++i) state[i] = static_cast<std::uint8_t>(i);
    for (unsigned i = 0, j = 0; i < 256; ++i) {
        j = (j + state[i] + kMaskKey[i % sizeof kMaskKey]) & 0xFF;
        std::swap(state[i], state[j]);
    }
    unsigned i = 0, j = 0;
    for (std::uint8_t& byte : bytes) {
        i = (i + 1) & 0xFF;
        j = (j + state[i]) & 0xFF;
        std::swap(state[i], state[j]);
        byte ^= state[(state[i] + state[j]) & 0xFF];
    }
}

/// Removes the file when it still has this name.
class UnfinishedFile {
public:
    explicit UnfinishedFile(std::string localPath) : local_(std::move(localPath)) {}
    ~UnfinishedFile() { std::remove(local_.c_str()); }
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;

private:
    std::string local_;
};

class BlankFile {
public:
    explicit BlankFile(DateTime created) : bytes_(kPages * kPageSize), created_(created) {}

    std::vector<std::uint8_t> Build() {
        FillHeader();
        FillGlobalMaps();
        for (const PageNumber id : kSystemTables) FillDefinitionPage(Page(id), 0, DefinitionBytes(SystemTable(id)), 0);
        FillSystemMaps();
        FillObjects();
        FillAces();
        FillIndexes();
        return std::move(bytes_);
    }

private:
    std::span<std::uint8_t> Page(PageNumber number) { return std::span(bytes_).subspan(number * kPageSize, kPageSize); }

    void FillHeader() {
        const std::span<std::uint8_t> page = Page(0);
        StoreU32(page, 0, 0x0100);
        constexpr std::string_view kProduct = "Standard Jet DB";
        std::copy(kProduct.begin(), kProduct.end(), page.begin() + 4);
        page[0x14] = 1;
        StoreU32(page, 0x18, PackRowPointer({1, 0}));
        StoreU32(page, 0x1C, PackRowPointer({1, 1}));
        for (std::uint32_t k = 0; k < 4; ++k) StoreU32(page, 0x20 + 4 * k, kSystemTables[k]);
        StoreU16(page, 0x3C, 1252);
        for (std::size_t at = 0x42; at < 0x6A; at += 4) StoreU32(page, at, kCreationDay);  // no password
        StoreU32(page, 0x6A, kEngineBuild);
        StoreU32(page, 0x6E, 0x0409);
        std::copy(std::begin(kCreationDate), std::end(kCreationDate), page.begin() + 0x72);
        MaskHeader(page.subspan(kMaskAt, kMaskBytes));
        StoreU32(page, 0x98, 0x0654);
        StoreU32(page, 0x9C, 0x302E34);  // "4.0"
        for (std::size_t slot = 0; slot < kCommitSlots; ++slot) StoreU16(page, kCommitSlotsAt + 2 * slot, 0x0100);
        StoreU16(page, kCommitSlotsAt, 0x0101);
    }

    void FillGlobalMaps() {
        RowPage::Format(Page(1), 1);
        RowPage rows(Page(1), 1, 1);
        const std::span<std::uint8_t> freePages = rows.AddSpace(kNewMapBytes);
        std::fill(freePages.begin() + 5 + kFreePagesFrom / 8, freePages.end(), std::uint8_t{0xFF});
        rows.AddSpace(kNewMapBytes);
    }

    void FillSystemMaps() {
        RowPage::Format(Page(kSystemMapsPage), kUsageMapPages);
        RowPage rows(Page(kSystemMapsPage), kSystemMapsPage, kUsageMapPages);
        for (std::size_t k = 0; k < kSystemMaps; ++k) rows.AddSpace(kNewMapBytes);
        const auto set = [&](RowPointer map, PageNumber page) {
            rows.Row(map.row)[5 + page / 8] |= static_cast<std::uint8_t>(1U << (page % 8));
        };
        for (const PageNumber id : kSystemTables) {
            const TableDefinition table = SystemTable(id);
            for (const RealIndex& index : table.realIndexes) set(index.map, index.root);
            if (table.rowCount == 0) continue;
            set(table.ownedMap, FirstDataPage(id));
            set(table.roomMap, FirstDataPage(id));
        }
    }

    static PageNumber FirstDataPage(PageNumber id) { return id == kObjectsTable ? kFirstObjectsPage : kFirstAcesPage; }

    void FillObjects() {
        RowPage::Format(Page(kFirstObjectsPage), kObjectsTable);
        const auto add = [&](std::uint32_t id, std::uint32_t parent, std::int16_t type, const char* name) {
            AddObject(id, parent, type, name);
        };
        add(kTablesContainer, kContainersParent, kContainerObject, "Tables");
        add(kDatabasesContainer, kContainersParent, kContainerObject, "Databases");
        add(kRelationshipsContainer, kContainersParent, kContainerObject, "Relationships");
        add(kDatabaseDocument, kDatabasesContainer, kDocumentObject, "MSysDb");
        for (const PageNumber id : kSystemTables) add(id, kTablesContainer, kTableObject, SystemTable(id).name.c_str());
    }

    void AddObject(std::uint32_t id, std::uint32_t parent, std::int16_t type, const char* name) {
        std::vector<Value> row(objects_.columns.size());
        const auto set = [&](const char* column) -> Value& { return row[ColumnAt(objects_, column)]; };
        set("Id").SetInteger(id);
        set("ParentId").SetInteger(parent);
        set("Type").SetInteger(type);
        set("Name").SetText(name);
        set("Flags").SetInteger(static_cast<std::int32_t>(kSystemObjectFlag));
        set("Owner") = Value::OfBytes(id == kDatabaseDocument ? kAdmin : kEngine);
        set("DateCreate").SetDateTime(created_);
        set("DateUpdate").SetDateTime(created_);
        Add(objects_, kFirstObjectsPage, row);
    }

    void FillAces() {
        RowPage::Format(Page(kFirstAcesPage), kAcesTable);
        struct Ace {
            std::uint32_t object;
            std::string_view account;
            std::int32_t rights;
            bool inheritable = false;
        };
        static constexpr Ace kAces[] = {
            {kObjectsTable, kAdmin, 0x60000},
            {kAcesTable, kAdmin, 0x60000},
            {kQueriesTable, kAdmin, 0x60000},
            {kRelationshipsTable, kAdmin, 0xE0000},
            {kTablesContainer, kCreator, 0xF00FE, true},
            {kTablesContainer, kAdmin, 0x60001},
            {kRelationshipsContainer, kCreator, 0xF00FE, true},
            {kRelationshipsContainer, kAdmin, 0x60001},
            {kDatabasesContainer, kAdmin, 0x60000},
            {kDatabaseDocument, kAdmin, 0x6000E},
            {kDatabaseDocument, kUsers, 0xE},
            {kQueriesTable, kUsers, 0x14},
            {kRelationshipsTable, kUsers, 0x14},
            {kObjectsTable, kUsers, 0x14},
            {kTablesContainer, kUsers, 0xFFEFF, true},
            {kRelationshipsContainer, kUsers, 0xFFFFF, true},
        };
        for (const Ace& ace : kAces) {
            std::vector<Value> row(aces_.columns.size());
            row[ColumnAt(aces_, "ObjectId")].SetInteger(ace.object);
            row[ColumnAt(aces_, "SID")] = Value::OfBytes(ace.account);
            row[ColumnAt(aces_, "ACM")].SetInteger(ace.rights);
            row[ColumnAt(aces_, "FInheritable")].SetBoolean(ace.inheritable);
            Add(aces_, kFirstAcesPage, row);
        }
    }

    /// Adds the row to its page and to the table's indexes.
    void Add(const TableDefinition& table, PageNumber page, const std::vector<Value>& row) {
        RowBuilder builder(table);
        builder.Start();
        for (const std::size_t k : builder.Order()) builder.Put(table.columns[k], row[k]);
        const std::uint8_t slot = RowPage(Page(page), page, table.Id()).Add(builder.Finish());
        for (const RealIndex& index : table.realIndexes) {
            std::string entry;
            IndexKey(table, index).Build(entry, row);
            AppendRowId(entry, {page, slot});
            entries_[index.root].push_back(std::move(entry));
        }
    }

    void FillIndexes() {
        for (const PageNumber id : kSystemTables) {
            for (const RealIndex& index : SystemTable(id).realIndexes) {
                std::vector<std::string>& entries = entries_[index.root];
                std::sort(entries.begin(), entries.end(), [](const std::string& a, const std::string& b) {
                    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
                        return static_cast<std::uint8_t>(x) < static_cast<std::uint8_t>(y);
                    });
                });
                WriteLoneLeaf(Page(index.root), id, entries);
            }
        }
    }

    std::vector<std::uint8_t> bytes_;
    DateTime created_;
    TableDefinition objects_ = SystemTable(kObjectsTable), aces_ = SystemTable(kAcesTable);
    std::vector<std::string> entries_[kPages];  ///< by root page
};

}  // namespace

std::vector<std::uint8_t> BlankDatabase(DateTime created) {
    return BlankFile(created).Build();
}

void CreateBlankDatabase(std::string_view storedPath) {
    const std::vector<std::uint8_t> bytes = BlankDatabase(NowToTheSecond());
    const std::string path(storedPath);
    if (FileExists(path)) throw Error(ErrorKind::Io, path, FileErrorText(EEXIST, path));
    const std::string unfinished = path + "-" + std::to_string(std::random_device{}()) + "-new";
    const std::string local = LocalPath(unfinished);
    DiskFile file(local, path, DiskFile::Mode::New);
    const UnfinishedFile guard(local);
    file.WriteAt(0, bytes);
    file.Sync();
    file.Close();
    RenameFile(unfinished, path);
    SyncFolder(FolderPart(local), path);
}

}  // namespace varnel::access
