#include "providers/foxpro/CdxKeeper.h"

#include <algorithm>
#include <utility>

#include "platform/Error.h"
#include "providers/foxpro/CdxBuilder.h"
#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/TableIndex.h"

namespace varnel::foxpro {

CdxKeeper::CdxKeeper(DbfFile& table, const std::string& indexPath)
    : table_(table),
      header_(table.Header()),
      fields_(KeyFieldsOf(table, header_)),
      number_(table.Files().Attach(indexPath)),
      file_(table.Files(), number_, indexPath) {
    OpenTags();
    CompareWithRecords();
}

void CdxKeeper::Resumed() {
    file_.Forget();
    if (known_ == Now()) return;
    known_.reset();
    OpenTags();
    CompareWithRecords();
}

CdxKeeper::Known CdxKeeper::Now() {
    return {file_.UpdateCounter(), file_.Pages(), table_.Records()};
}

void CdxKeeper::OpenTags() {
    tags_.clear();
    for (std::size_t k = 0; k < file_.Tags().size(); ++k) {
        TagKeys keys(file_.Tags()[k], header_, fields_);
        const KeyShape shape = keys.Shape();
        tags_.push_back({std::move(keys), CdxTree(file_, k, shape), {}, {}});
    }
}

void CdxKeeper::CompareWithRecords() {
    for (std::size_t k = 0; k < tags_.size(); ++k) {
        const std::string difference = DifferenceOf(file_, k, tags_[k].keys, table_);
        if (difference.empty()) continue;
        throw Error(ErrorKind::NotSupported, table_.Name(),
                    "Index tag " + file_.Tags()[k].name + " does not match the table: " + difference + ".");
    }
}

void CdxKeeper::ReadKeys(RecordNumber number, std::span<const std::uint8_t> record, Key Tag::*key) {
    for (Tag& tag : tags_) {
        Key& of = tag.*key;
        of.exists = tag.keys.KeyOf({record, number}, of.bytes);
        if (!of.exists) of.bytes.clear();
    }
}

void CdxKeeper::BeforeAppend(RecordNumber number, std::span<const std::uint8_t> record) {
    for (Tag& tag : tags_) tag.before.exists = false, tag.before.bytes.clear();
    ReadKeys(number, record, &Tag::after);
    Change(static_cast<std::uint32_t>(number));
}

void CdxKeeper::BeforeUpdate(RecordNumber number, std::span<const std::uint8_t> before,
                             std::span<const std::uint8_t> after) {
    ReadKeys(number, before, &Tag::before);
    ReadKeys(number, after, &Tag::after);
    Change(static_cast<std::uint32_t>(number));
}

void CdxKeeper::BeforeDelete(RecordNumber number, std::span<const std::uint8_t> record) {
    const bool isFiltered =
        std::any_of(tags_.begin(), tags_.end(), [](const Tag& tag) { return tag.keys.IsFiltered(); });
    if (!isFiltered) return;  // the record keeps its keys
    deletedRecord_.assign(record.begin(), record.end());
    deletedRecord_[0] = kDeletedFlag;
    BeforeUpdate(number, record, deletedRecord_);
}

void CdxKeeper::Change(std::uint32_t number) {
    for (std::size_t k = 0; k < tags_.size(); ++k) RequireUnique(tags_[k], k, number);
    file_.Trim();
    const bool mustRebuild = std::exchange(mustRebuild_, true);  // should a tag fail after others were changed
    bool mayLackKeys = false;
    for (Tag& tag : tags_) mayLackKeys |= ChangeTag(tag, number);
    mustRebuild_ = mustRebuild || mayLackKeys;
}

void CdxKeeper::RequireUnique(const Tag& tag, std::size_t at, std::uint32_t number) {
    if (!tag.keys.IsCandidate() || !tag.after.exists || tag.before == tag.after) return;
    const auto holder = tags_[at].tree.FindRecord(tag.after.bytes);
    if (!holder || *holder == number) return;
    throw Error(ErrorKind::Constraint, table_.Name(),
                "Uniqueness of index " + file_.Tags()[at].name + " is violated: record " + std::to_string(*holder) +
                    " has the same key.");
}

/// Returns true when a unique tag may now lack the next record that has the key.
bool CdxKeeper::ChangeTag(Tag& tag, std::uint32_t number) {
    if (tag.before == tag.after) return false;
    const bool wasThere = tag.before.exists && tag.tree.Remove(tag.before.bytes, number);
    const bool mayLackKeys = wasThere && tag.keys.IsUnique();
    if (!tag.after.exists) return mayLackKeys;
    if (tag.keys.IsUnique()) {
        const auto holder = tag.tree.FindRecord(tag.after.bytes);
        if (holder && *holder < number) return mayLackKeys;
        if (holder) tag.tree.Remove(tag.after.bytes, *holder);
    }
    tag.tree.Insert(tag.after.bytes, number);
    return mayLackKeys;
}

void CdxKeeper::Emptied() {
    Rebuild(false);
}

void CdxKeeper::Commit() {
    mustRebuild_ ? Rebuild(true) : file_.Flush();
    known_ = Now();
}

void CdxKeeper::Rebuild(bool withRecords) {
    mustRebuild_ = true;  // until it is done
    std::vector<KeyShape> shapes;
    for (const Tag& tag : tags_) shapes.push_back(tag.keys.Shape());
    std::vector<std::uint8_t> key;
    BuildCdx(table_.Files(), number_, file_.Tags(), shapes, file_.UpdateCounter() + 1,
             [&](std::size_t at, KeySorter& sorter) {
                 if (!withRecords) return;
                 VisitRecords(table_, [&](const KeyRecord& record) {
                     if (tags_[at].keys.KeyOf(record, key)) sorter.Add(key, static_cast<std::uint32_t>(record.number));
                 });
             });
    file_.Forget();
    mustRebuild_ = false;
}

/// What is in memory is dropped when the keeper resumes; what is known of the last commit point still holds.
void CdxKeeper::RolledBack() {
    mustRebuild_ = false;
}

std::unique_ptr<IndexKeeper> OpenIndexKeeper(DbfFile& table) {
    const auto path = FindStructuralIndex(table);
    if (!path) return nullptr;
    return std::make_unique<CdxKeeper>(table, *path);
}

}  // namespace varnel::foxpro
