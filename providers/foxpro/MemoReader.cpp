#include "providers/foxpro/MemoReader.h"

#include <algorithm>
#include <array>
#include <optional>

#include "platform/ByteView.h"
#include "providers/foxpro/StoredNumbers.h"

namespace varnel::foxpro {
namespace {

constexpr std::size_t kPieceBytes = 32 * 1024;
constexpr std::size_t kDBaseBlock = 512, kBlockHead = 8;

std::string_view AsText(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Gives count bytes from offset on in pieces; false when the file ends before.
bool GivePieces(const ByteFile& file, std::uint64_t offset, std::uint64_t count, const MemoReader::Piece& piece) {
    std::array<std::uint8_t, kPieceBytes> buffer;
    while (count > 0) {
        const std::size_t wanted = static_cast<std::size_t>(std::min<std::uint64_t>(count, buffer.size()));
        const std::size_t got = file.Read(offset, {buffer.data(), wanted});
        if (got == 0) return false;
        piece(AsText({buffer.data(), got}));
        offset += got;
        count -= got;
    }
    return true;
}

/// Big-endian. Head: u16 bytes of a block at 6. Block: u32 type, u32 bytes of data, data.
class FptReader : public MemoReader {
public:
    explicit FptReader(const ByteFile& file) : file_(file) {
        std::array<std::uint8_t, 8> head{};
        if (file_.Read(0, head) < head.size()) return;
        blockBytes_ = ByteView(head, "memo head").U16Big(6);
        if (blockBytes_ == 0) blockBytes_ = kDBaseBlock;
    }

    bool Read(std::uint64_t block, const Piece& piece) const override {
        std::array<std::uint8_t, 8> head{};
        const std::uint64_t at = block * blockBytes_;  // both are of at most 32 bits
        const std::uint64_t size = file_.Size();
        if (at < head.size() || at > size || size - at < head.size() || file_.Read(at, head) < head.size())
            return false;
        const std::uint64_t count = ByteView(head, "memo block").U32Big(4);
        return count <= size - at - head.size() && GivePieces(file_, at + head.size(), count, piece);
    }

private:
    const ByteFile& file_;
    std::uint64_t blockBytes_ = 64;
};

/// Text from the block's first byte up to the first 1A. A line end that the editor put in (8D 0A) is no part of it.
class Dbt3Reader : public MemoReader {
public:
    Dbt3Reader(const ByteFile& file, std::uint64_t blockBytes) : file_(file), blockBytes_(blockBytes) {}

    bool Read(std::uint64_t block, const Piece& piece) const override {
        std::array<std::uint8_t, kPieceBytes> buffer;
        std::string text;
        bool softEnd = false;
        for (std::uint64_t at = block * blockBytes_;;) {
            const std::size_t got = file_.Read(at, buffer);
            if (got == 0) return false;
            const std::string_view part = AsText({buffer.data(), got});
            const std::size_t end = part.find(static_cast<char>(kEndMark));
            AppendUnwrapped(text, part.substr(0, end), softEnd);
            piece(text);
            text.clear();
            if (end != std::string_view::npos) return true;
            at += got;
        }
    }

private:
    /// softEnd: whether the last byte before part was an 8D that has not been given yet.
    static void AppendUnwrapped(std::string& text, std::string_view part, bool& softEnd) {
        for (const char byte : part) {
            if (softEnd && byte != '\n') text += '\x8D';
            const bool drops = softEnd && byte == '\n';
            softEnd = byte == '\x8D';
            if (!softEnd && !drops) text += byte;
        }
    }

    const ByteFile& file_;
    std::uint64_t blockBytes_;
};

/// Head: u16 bytes of a block at 20. Block: FF FF 08 00, u32 bytes of data and these eight, data; without that mark it
/// is one of dBASE III.
class Dbt4Reader : public MemoReader {
public:
    explicit Dbt4Reader(const ByteFile& file) : file_(file) {
        std::array<std::uint8_t, 22> head{};
        if (file_.Read(0, head) == head.size()) blockBytes_ = ByteView(head, "memo head").U16(20);
        if (blockBytes_ == 0) blockBytes_ = kDBaseBlock;
    }

    bool Read(std::uint64_t block, const Piece& piece) const override {
        std::array<std::uint8_t, 8> head{};
        const std::uint64_t at = block * blockBytes_;
        const std::size_t got = file_.Read(at, head);
        const ByteView view({head.data(), got}, "memo block");
        if (!view.StartsWithAt(0, std::string_view("\xFF\xFF\x08\x00", 4))) {
            return Dbt3Reader(file_, blockBytes_).Read(block, piece);
        }
        if (got < head.size()) return false;
        const std::uint64_t whole = view.U32(4), size = file_.Size();
        return whole >= head.size() && whole <= size - at &&
               GivePieces(file_, at + head.size(), whole - head.size(), piece);
    }

private:
    const ByteFile& file_;
    std::uint64_t blockBytes_ = kDBaseBlock;
};

/// Memos of a kind that is not read here.
class NoReader : public MemoReader {
public:
    bool Read(std::uint64_t /*block*/, const Piece& /*piece*/) const override { return false; }
};

}  // namespace

std::unique_ptr<MemoReader> OpenMemoReader(const ByteFile& file, MemoKind kind) {
    switch (kind) {
        case MemoKind::Fpt:
            return std::make_unique<FptReader>(file);
        case MemoKind::Dbt3:
            return std::make_unique<Dbt3Reader>(file, kDBaseBlock);
        case MemoKind::Dbt4:
            return std::make_unique<Dbt4Reader>(file);
        default:
            return std::make_unique<NoReader>();
    }
}

}  // namespace varnel::foxpro
