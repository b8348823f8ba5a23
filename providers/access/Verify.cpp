#include "providers/access/Verify.h"

#include <map>
#include <memory>

#include "providers/access/FileHeader.h"
#include "providers/access/UsageMapReader.h"
#include "providers/access/VerifyCatalog.h"
#include "providers/access/VerifyContext.h"
#include "providers/access/VerifyDefinition.h"
#include "providers/access/VerifyIndexes.h"
#include "providers/access/VerifyRows.h"

namespace varnel::access {
namespace {

using Tables = std::map<PageNumber, std::shared_ptr<const TableDefinition>>;

/// The file must be held, and outlives the shared pointer's copies.
std::shared_ptr<PageFile> Shared(PageFile& file) {
    return {std::shared_ptr<void>(), &file};
}

class Verification {
public:
    Verification(PageFile& file, const RowsSeen& seen) : context_{file, seen, {}, {}}, header_(ReadFileHeader(file)) {}

    FileReport Run() {
        Schema schema(Shared(context_.file), header_.catalog, header_.codePage);
        context_.textPage = schema.TextPage();
        ClaimOwnPages();
        const bool hasCatalog = context_.Try([&] { schema.Objects(); });
        if (hasCatalog) {
            context_.Try([&] { VerifyCatalog(context_, schema); });
            ReadDefinitions(schema);
            for (const auto& [page, table] : tables_) VerifyTable(*table);
            VerifyRelationships(context_, tables_);
            CheckMapPages();
            CheckAccounts();
        }
        TellExtent();
        return std::move(context_.report);
    }

private:
    /// The header, and the file's own maps of pages.
    void ClaimOwnPages() {
        const PageNumber count = context_.file.PageCount();
        context_.ledger.Claim(0, context_.ledger.NewUse("the file's header"), count);
        const PageLedger::Use use = context_.ledger.NewUse("the maps of free pages");
        for (const RowPointer map : {header_.freePages, header_.releasedPages}) {
            if (map.IsNone()) continue;
            if (!context_.ledger.IsClaimed(map.page)) context_.ledger.Claim(map.page, use, count);
        }
        free_ = FreePages(header_.freePages);
        released_ = FreePages(header_.releasedPages);
    }

    PageSet FreePages(RowPointer map) {
        PageSet pages;
        context_.Try([&] {
            pages = ReadUsageMap(context_.file, map);
            ClaimBitmapPages(context_, map, context_.ledger.NewUse("the maps of free pages"));
        });
        return pages;
    }

    void ReadDefinitions(Schema& schema) {
        for (const CatalogEntry& entry : schema.Objects().Entries()) {
            if (entry.type != kLocalTable) continue;
            context_.Try([&] { tables_[static_cast<PageNumber>(entry.id)] = schema.DefinitionOf(entry); });
        }
    }

    void VerifyTable(const TableDefinition& table) {
        ++context_.tables;
        VerifyDefinition(context_, table);
        VerifyRows rows(context_, table);
        rows.Run();
        context_.rows += rows.Count();
        VerifyIndexes(context_, table, rows);
    }

    /// A page of maps belongs to nobody in particular.
    void CheckMapPages() {
        const PageSet& pages = context_.ledger.MapPages();
        for (auto page = pages.Next(0); page; page = pages.Next(*page + 1)) {
            const std::string place = "Page " + std::to_string(*page) + " (maps of pages)";
            VerifyRowPage(context_, *page, kUsageMapOwner, place);
        }
        if (header_.freePages.IsNone()) return;
        const PageNumber own = header_.freePages.page;
        VerifyRowPage(context_, own, own, "Page " + std::to_string(own) + " (maps of free pages)");
    }

    /// Every page is free, or used for one thing.
    void CheckAccounts() {
        for (PageNumber page = 0; page < context_.file.PageCount(); ++page) {
            const bool isFree = free_.Has(page) || released_.Has(page);
            const std::string place = "Page " + std::to_string(page);
            if (context_.ledger.IsClaimed(page)) {
                if (isFree)
                    context_.Find(place + " is noted as free, but used by " + context_.ledger.UseOf(page) + ".");
            } else if (!isFree) {
                context_.Note(place + " is neither used nor free.");
            }
        }
    }

    void TellExtent() {
        context_.report.extent = std::to_string(context_.tables) + " tables, " + std::to_string(context_.rows) +
                                 " rows, " + std::to_string(context_.indexes) + " indexes with " +
                                 std::to_string(context_.entries) + " entries, " +
                                 std::to_string(context_.file.PageCount()) + " pages";
    }

    VerifyContext context_;
    FileHeader header_;
    PageSet free_, released_;
    Tables tables_;
};

}  // namespace

FileReport VerifyDatabase(PageFile& file) {
    const auto hold = file.HoldForReading();
    return Verification(file, {}).Run();
}

FileReport VerifyDatabase(std::string_view storedPath, const std::string& password, const RowsSeen& seen) {
    const auto file = OpenPageFile(storedPath, true);
    const auto hold = file->HoldForReading();
    CheckPassword(ReadFileHeader(*file), password, std::string(storedPath));
    return Verification(*file, seen).Run();
}

}  // namespace varnel::access
