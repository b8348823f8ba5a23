// How a .dbf file is changed: its side of LiveDbfFile.
#include <algorithm>
#include <utility>

#include "platform/Clock.h"
#include "platform/Error.h"
#include "providers/foxpro/LiveDbfFile.h"
#include "providers/foxpro/StoredNumbers.h"

namespace varnel::foxpro {

void LiveDbfFile::CheckWritable() {
    if (!header_.readOnlyReason.empty()) throw Error(ErrorKind::NotSupported, name_, header_.readOnlyReason);
    if (!damage_.empty()) throw Error(ErrorKind::Corrupt, name_, damage_);
}

/// Announces what every commit changes, so that the journal waits for the disk once.
void LiveDbfFile::BeginChange() {
    if (std::exchange(changed_, true)) return;
    files_->Protect(0, 0, head_.size());
    const std::uint64_t end = records_.EndOfRecords();
    if (files_->Size(0) > end) files_->Protect(0, end, files_->Size(0) - end);
    if (memo_) memo_->Protect();
}

void LiveDbfFile::MakeRoom() {
    if (records_.IsFull()) records_.Flush();
    if (memo_ && memo_->IsFull()) memo_->Flush();
}

void LiveDbfFile::TellWatchers(bool memosGo) {
    for (Watcher* watcher : watchers_) watcher->BeforeChange(memosGo);
}

void LiveDbfFile::Append(std::span<const Value> values, const std::vector<bool>& assigned) {
    BeginChange();
    MakeRoom();
    if (records_.EndOfRecords() + header_.recordBytes + 1 > kMaxFileBytes) {
        throw Error(ErrorKind::Constraint, name_, "'" + name_ + "' cannot grow beyond 2 GB");
    }
    const std::span<const std::uint8_t> record = writer_->NewRecord(values, assigned);
    UndoGuard guard(*writer_);
    if (keeper_) keeper_->BeforeAppend(records_.Records() + 1, record);
    records_.Append(record);
    guard.Keep();
}

std::vector<std::uint8_t> LiveDbfFile::RecordToChange(RecordNumber number) {
    BeginChange();
    MakeRoom();
    TellWatchers(false);
    std::vector<std::uint8_t> record(header_.recordBytes);
    records_.Read(number, 1, record);
    return record;
}

void LiveDbfFile::Update(RecordNumber number, std::span<const Value> values, const std::vector<bool>& assigned) {
    const std::vector<std::uint8_t> before = RecordToChange(number);
    std::vector<std::uint8_t> after = before;
    writer_->ChangeRecord(after, values, assigned);
    UndoGuard guard(*writer_);
    if (keeper_) keeper_->BeforeUpdate(number, before, after);
    records_.Change(number, after);
    guard.Keep();
}

void LiveDbfFile::Delete(RecordNumber number) {
    std::vector<std::uint8_t> record = RecordToChange(number);
    if (record[0] == kDeletedFlag) return;
    if (keeper_) keeper_->BeforeDelete(number, record);
    record[0] = kDeletedFlag;
    records_.Change(number, record);
}

void LiveDbfFile::DeleteAll() {
    TellWatchers(true);
    BeginChange();
    files_->Truncate(0, header_.headerBytes);
    records_.Reset(header_.headerBytes, header_.recordBytes, 0);
    if (memo_) memo_->DeleteAll();
    if (keeper_) keeper_->Emptied();
}

/// The head as it is to be: date, number of records, next autoincrements.
void LiveDbfFile::StoreNumbers() {
    const std::span<std::uint8_t> head(head_);
    const CivilTime today = ToCivil(Now());
    head[1] =
        static_cast<std::uint8_t>(header_.dialect == DbfDialect::VisualFoxPro ? today.year % 100 : today.year - 1900);
    head[2] = static_cast<std::uint8_t>(today.month);
    head[3] = static_cast<std::uint8_t>(today.day);
    header_.records = records_.Records();
    PutLittle(head.subspan(4, 4), header_.records);
    for (const DbfField& field : header_.fields) {
        if (field.autoIncrement) PutLittle(head.subspan(field.descriptorAt + 19, 4), field.nextValue);
    }
}

void LiveDbfFile::Commit() {
    if (!changed_) return;
    if (memo_) memo_->Flush();
    records_.Flush();
    if (records_.Records() > 0) files_->Write(0, records_.EndOfRecords(), std::span(&kEndMark, 1));
    StoreNumbers();
    files_->Write(0, 0, head_);
    if (keeper_) keeper_->Commit();
    files_->Commit();
    changed_ = false;
}

void LiveDbfFile::Drop() {
    const auto hold = files_->HoldForWriting();
    for (const std::string_view extension : {"fpt", "dbt", "cdx"}) {
        if (const auto companion = FindCompanion(path_, extension)) files_->Remove(files_->Attach(*companion));
    }
    files_->Remove(0);
    files_->Commit();
}

void LiveDbfFile::SetIndexFlag(bool hasIndex) {
    BeginChange();
    header_.tableFlags =
        static_cast<std::uint8_t>(hasIndex ? header_.tableFlags | kHasIndex : header_.tableFlags & ~kHasIndex);
    head_[kTableFlagsAt] = header_.tableFlags;
}

}  // namespace varnel::foxpro
