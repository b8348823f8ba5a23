// A compound index file (.cdx, .dcx): its head, its directory of tags, the heads of the tags, and its nodes through a
// bounded cache. Nodes are changed in memory and written by Flush.
//
//   head      (of the file at 0, of every tag; 1024 bytes)   0 4 root   8 4 update counter (big; the file's only)
//             12 2 key length   14 1 options   15 1 signature   494 8 collation   502 2 descending
//             504 2 place of the FOR text in the pool   506 2 its length   508 2, 510 2 the same of the key text
//             512 … pool: both texts, each ended by a zero
//   directory a tree of 10-byte tag names; the record of an entry is where the tag's head begins
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/JournaledFiles.h"
#include "providers/foxpro/CdxNode.h"

namespace varnel::foxpro {

inline constexpr std::uint8_t kUniqueTag = 0x01, kNullableTag = 0x02, kCandidateTag = 0x04, kFilteredTag = 0x08;
inline constexpr std::uint8_t kCompactTag = 0x20, kCompoundTag = 0x40, kTagDirectory = 0x80;
inline constexpr std::size_t kCdxHeadBytes = 1024;
inline constexpr KeyShape kDirectoryShape{10, ' '};

struct CdxTag {
    std::string name;  ///< upper case
    CdxPage head = 0;
    CdxPage root = kNoCdxPage;
    std::uint16_t keyLength = 0;
    std::uint8_t options = 0;
    std::uint8_t signature = 0;
    std::string collation;
    bool descending = false;
    std::string keyText, filterText;  ///< as stored, in the table's code page

    bool Has(std::uint8_t option) const { return (options & option) != 0; }
};

class CdxFile {
public:
    /// files: outlives this. Throws Error{Corrupt}, Error{Io}.
    CdxFile(JournaledFiles& files, JournaledFiles::Number number, std::string name);

    const std::string& Name() const { return name_; }
    const std::vector<CdxTag>& Tags() const { return tags_; }
    std::uint32_t UpdateCounter() const { return updateCounter_; }
    std::uint32_t Pages() const { return pages_; }

    /// The node at page; it stays at its address until Flush, Trim or Forget. Throws Error{Corrupt} for a page outside
    /// the file, a node that contradicts itself, or one that belongs to two tags.
    CdxNode& Load(CdxPage page, KeyShape shape);
    /// The same for whoever only walks by: nothing is kept.
    CdxNode Read(CdxPage page, KeyShape shape) const;
    /// To be called before a loaded node is changed.
    CdxNode& Change(CdxPage page, KeyShape shape);
    /// Throws Error{Constraint} when so many further pages would pass 2 GB.
    void RequireRoom(std::uint32_t pages) const;
    /// A new node without brothers; returns its page. Needs room for one.
    CdxPage Append(KeyShape shape, bool isLeaf);
    /// The page is not part of a tree any more; Append may give it out again.
    void Release(CdxPage page);
    void SetRoot(std::size_t tag, CdxPage root);

    bool IsChanged() const { return changed_; }
    /// Writes every change and grows the update counter. Throws Error{Io}; what was not written stays.
    void Flush();
    /// Keeps the cache bounded, by Flush if need be; no node reference survives.
    void Trim();
    /// Reads head and directory anew; what was not flushed is gone.
    void Forget();

private:
    struct Kept {
        CdxNode node;
        bool changed = false;
    };

    void ReadTags();
    CdxTag ReadTag(CdxPage head, std::string tagName) const;
    ByteView ReadPart(CdxPage at, std::span<std::uint8_t> into) const;
    Kept& Keep(CdxPage page, KeyShape shape);
    void WriteNodes(const std::vector<CdxPage>& pages);
    void WriteHeads();
    std::size_t KeptBytes() const;

    JournaledFiles& files_;
    JournaledFiles::Number number_;
    std::string name_;
    std::vector<CdxTag> tags_;
    std::unordered_map<CdxPage, Kept> kept_;
    std::vector<CdxPage> released_;
    std::size_t lookAgainAt_ = 0;  // kept nodes: then their bytes are counted
    std::uint32_t pages_ = 0;      // those that Append made included
    std::uint32_t updateCounter_ = 0;
    bool changed_ = false;
};

/// The head of a tag; of the file itself when its options say that it is the directory.
std::vector<std::uint8_t> EncodeCdxHead(const CdxTag& tag, std::uint32_t updateCounter);

}  // namespace varnel::foxpro
