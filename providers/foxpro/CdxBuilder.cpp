#include "providers/foxpro/CdxBuilder.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/Error.h"

namespace varnel::foxpro {
namespace {

/// The file behind its first page of nodes; pages are given out one after another.
class FileSink : public CdxPageSink {
public:
    FileSink(JournaledFiles& files, JournaledFiles::Number number, CdxPage next)
        : files_(files), number_(number), next_(next) {}

    CdxPage Allocate() override { return Take(kCdxPageBytes); }
    void Write(CdxPage page, std::span<const std::uint8_t> bytes) override { files_.Write(number_, page, bytes); }
    CdxPage Take(std::size_t bytes) {
        if (next_ > 0x7FFF'FFFF - bytes) throw Error(ErrorKind::Constraint, "", "The index would pass 2 GB.");
        return std::exchange(next_, next_ + static_cast<CdxPage>(bytes));
    }

private:
    JournaledFiles& files_;
    JournaledFiles::Number number_;
    CdxPage next_;
};

/// The directory's first page stands before the tags, which are written first; further ones come after all else.
class DirectorySink : public CdxPageSink {
public:
    explicit DirectorySink(CdxPageSink& rest) : rest_(rest) {}
    CdxPage Allocate() override { return std::exchange(isFirst_, false) ? kCdxHeadBytes : rest_.Allocate(); }
    void Write(CdxPage page, std::span<const std::uint8_t> bytes) override { rest_.Write(page, bytes); }

private:
    CdxPageSink& rest_;
    bool isFirst_ = true;
};

CdxPage BuildTree(CdxPageSink& sink, const CdxTag& tag, KeyShape shape, KeySorter& sorter) {
    bool more = sorter.Next();
    CdxTreeBuilder builder(sink, shape, sorter.GreatestRecord(), !tag.Has(kTagDirectory));
    std::vector<std::uint8_t> last;
    for (; more; more = sorter.Next()) {
        const KeyBytes key = sorter.Key();
        if (tag.Has(kUniqueTag) && std::equal(key.begin(), key.end(), last.begin(), last.end())) continue;
        last.assign(key.begin(), key.end());
        builder.Add(key, sorter.Record());
    }
    return builder.Finish();
}

CdxPage BuildDirectory(CdxPageSink& rest, const CdxTag& directory, const std::vector<CdxTag>& tags) {
    KeySorter names(kDirectoryShape.length);
    for (const CdxTag& tag : tags) {
        std::vector<std::uint8_t> name(tag.name.begin(), tag.name.end());
        name.resize(kDirectoryShape.length, kDirectoryShape.pad);
        names.Add(name, tag.head);
    }
    DirectorySink sink(rest);
    return BuildTree(sink, directory, kDirectoryShape, names);
}

}  // namespace

CdxTreeBuilder::CdxTreeBuilder(CdxPageSink& sink, KeyShape shape, std::uint32_t greatestRecord, bool marksLeaves)
    : sink_(sink), shape_(shape), greatestRecord_(greatestRecord), marksLeaves_(marksLeaves) {
    levels_.push_back(NewLevel(true, sink_.Allocate()));
}

CdxTreeBuilder::Level CdxTreeBuilder::NewLevel(bool isLeaf, CdxPage page) const {
    Level level{CdxNode(shape_, isLeaf), page};
    level.node.ExpectRecords(greatestRecord_);
    level.node.isBulkBuilt = isLeaf && marksLeaves_;
    return level;
}

void CdxTreeBuilder::Put(std::size_t level, KeyBytes key, std::uint32_t record, CdxPage child) {
    if (level == levels_.size()) levels_.push_back(NewLevel(false, sink_.Allocate()));
    if (levels_[level].node.Insert(levels_[level].node.Count(), key, record, child)) return;
    Close(level);
    levels_[level].node.Insert(0, key, record, child);
}

/// Writes the node and begins its right brother.
void CdxTreeBuilder::Close(std::size_t level) {
    const CdxPage page = levels_[level].page, next = sink_.Allocate();
    levels_[level].node.right = next;
    WriteNode(levels_[level]);
    const CdxNode closed = std::move(levels_[level].node);
    levels_[level] = NewLevel(level == 0, next);
    levels_[level].node.left = page;
    Put(level + 1, closed.Key(closed.Count() - 1), closed.Record(closed.Count() - 1), page);
}

void CdxTreeBuilder::WriteNode(const Level& level) {
    CdxPageBytes bytes;
    level.node.Encode(bytes);
    sink_.Write(level.page, bytes);
}

CdxPage CdxTreeBuilder::Finish() {
    for (std::size_t level = 0; level + 1 < levels_.size(); ++level) {
        WriteNode(levels_[level]);
        const Level& done = levels_[level];
        const CdxNode node = done.node;
        Put(level + 1, node.Key(node.Count() - 1), node.Record(node.Count() - 1), done.page);
    }
    levels_.back().node.isRoot = true;
    WriteNode(levels_.back());
    return levels_.back().page;
}

void BuildCdx(JournaledFiles& files, JournaledFiles::Number number, std::vector<CdxTag> tags,
              std::span<const KeyShape> shapes, std::uint32_t updateCounter, const GiveKeys& giveKeys) {
    files.Truncate(number, 0);
    FileSink sink(files, number, kCdxHeadBytes + kCdxPageBytes);
    for (std::size_t k = 0; k < tags.size(); ++k) {
        tags[k].head = sink.Take(kCdxHeadBytes);
        KeySorter sorter(tags[k].keyLength);
        giveKeys(k, sorter);
        tags[k].root = BuildTree(sink, tags[k], shapes[k], sorter);
        sink.Write(tags[k].head, EncodeCdxHead(tags[k], 0));
    }
    CdxTag directory;
    directory.options = kTagDirectory | kCompoundTag | kCompactTag;
    directory.signature = 1;
    directory.keyLength = kDirectoryShape.length;
    directory.root = BuildDirectory(sink, directory, tags);
    sink.Write(0, EncodeCdxHead(directory, updateCounter));
}

}  // namespace varnel::foxpro
