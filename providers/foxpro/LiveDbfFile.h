// The one object of a .dbf file in the process: DbfFile as it is.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "providers/foxpro/DbfFile.h"
#include "providers/foxpro/MemoFile.h"
#include "providers/foxpro/RecordStore.h"
#include "providers/foxpro/RecordWriter.h"

namespace varnel::foxpro {

class LiveDbfFile : public DbfFile {
public:
    LiveDbfFile(std::string storedPath, int codePageWhenNoneStated);

    const std::string& StoredPath() const override { return path_; }
    const std::string& Name() const override { return name_; }
    JournaledFiles& Files() override { return *files_; }
    std::unique_ptr<Hold> HoldForReading() override;
    std::unique_ptr<Hold> HoldForWriting() override;
    void Drop() override;
    void AddWatcher(Watcher& watcher) override { watchers_.push_back(&watcher); }
    void RemoveWatcher(Watcher& watcher) noexcept override { std::erase(watchers_, &watcher); }

    const DbfHeader& Header() override { return header_; }
    RecordNumber Records() override { return records_.Records(); }
    void ReadRecords(RecordNumber first, std::size_t count, std::span<std::uint8_t> into) override;
    const MemoReader* Memo() override { return memo_ ? &memo_->Reader() : nullptr; }
    const ByteFile* MemoBytes() override { return memo_ ? &*memo_ : nullptr; }
    const std::string& Damage() override { return damage_; }

    void Append(std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Update(RecordNumber number, std::span<const Value> values, const std::vector<bool>& assigned) override;
    void Delete(RecordNumber number) override;
    void DeleteAll() override;
    void Commit() override;
    void SetIndexFlag(bool hasIndex) override;

private:
    class ReadHold;
    class WriteHold;

    // LiveDbfFile.cpp
    void Refresh();
    void Load();
    void LookForDamage(std::uint64_t fileBytes);
    void EndWriting();
    void OpenKeeper();

    // LiveDbfWriting.cpp
    void CheckWritable();
    void BeginChange();
    void MakeRoom();
    void TellWatchers(bool memosGo);
    void StoreNumbers();
    std::vector<std::uint8_t> RecordToChange(RecordNumber number);

    std::string path_, name_;
    int codePageWhenNoneStated_;
    std::unique_ptr<JournaledFiles> files_;
    std::optional<std::uint64_t> generation_;  ///< of what is kept below
    DbfHeader header_;
    std::vector<std::uint8_t> head_;  ///< the file's first headerBytes, as they will be
    std::string damage_;
    RecordStore records_;
    std::optional<MemoFile> memo_;
    std::unique_ptr<RecordWriter> writer_;
    std::unique_ptr<IndexKeeper> keeper_;
    std::vector<Watcher*> watchers_;
    int writers_ = 0;       ///< write holds
    bool changed_ = false;  ///< since the last commit point
};

}  // namespace varnel::foxpro
