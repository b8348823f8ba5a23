#include "providers/access/FilePages.h"

#include <algorithm>
#include <string>

#include "platform/Error.h"
#include "providers/access/UsageMapReader.h"

namespace varnel::access {
namespace {

constexpr PageNumber kLastFixedPage = 5;  ///< header, free map, definitions of the system tables
constexpr PageNumber kPagesAtOnce = 32;   ///< beyond the file's end that count as free when there is no other

}  // namespace

FilePages::FilePages(PageFile& file, RowPointer freeMap)
    : file_(file),
      freeMap_(freeMap),
      maps_(file, [this] { return TakeLoose(); }),
      free_(file, [this] { return appended_.emplace_back(file_.Append()); }) {}

PageNumber FilePages::Take(RowPointer map) {
    const PageNumber page = TakeLoose();
    maps_.Add(map, page);
    return page;
}

void FilePages::Give(RowPointer map, PageNumber page) {
    maps_.Remove(map, page);
    GiveLoose(page);
}

void FilePages::KeepAppended() {
    for (; !appended_.empty(); appended_.pop_back()) free_.Remove(freeMap_, appended_.back());
}

PageNumber FilePages::TakeLoose() {
    appended_.clear();
    std::optional<PageNumber> page = free_.First(freeMap_);
    while (!page) {
        const PageNumber end = file_.PageCount();
        free_.AddRange(freeMap_, end, (end / kPagesAtOnce + 1) * kPagesAtOnce);
        KeepAppended();
        page = free_.First(freeMap_);
    }
    if (*page <= kLastFixedPage)
        throw Error(
            ErrorKind::Corrupt, file_.StoredPath(),
            "The database '" + file_.StoredPath() + "' is damaged: page " + std::to_string(*page) + " counts as free.");
    free_.Remove(freeMap_, *page);
    if (*page < file_.PageCount()) {
        const std::span<std::uint8_t> bytes = file_.Change(*page);
        std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
        return *page;
    }
    // A free page beyond the end is the first one there, as long as no page before it was lost to the map.
    const PageNumber made = file_.Append();
    if (made != *page) free_.Remove(freeMap_, made);
    if (made != *page) free_.Add(freeMap_, *page);
    return made;
}

void FilePages::GiveAll(RowPointer map) {
    const PageSet members = ReadUsageMap(file_, map);
    EmptyMap(map);
    for (auto page = members.Next(0); page; page = members.Next(*page + 1))
        if (*page < file_.PageCount()) GiveLoose(*page);
}

void FilePages::EmptyMap(RowPointer map) {
    for (const PageNumber page : maps_.Reset(map)) GiveLoose(page);
}

void FilePages::GiveLoose(PageNumber page) {
    free_.Add(freeMap_, page);
    KeepAppended();
}

}  // namespace varnel::access
