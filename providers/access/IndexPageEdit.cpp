#include "providers/access/IndexPageEdit.h"

#include <array>
#include <bit>
#include <cstring>

namespace varnel::access {
namespace {

constexpr std::size_t kWordBits = 64;

/// The mask as words, so that its bits move together.
class MaskWords {
public:
    explicit MaskWords(std::span<const std::uint8_t> mask) {
        static_assert(std::endian::native == std::endian::little);
        std::memcpy(words_.data(), mask.data(), mask.size());
    }
    void Store(std::span<std::uint8_t> mask) const { std::memcpy(mask.data(), words_.data(), mask.size()); }

    /// Bits above from move up by count; zeros come in.
    void MoveUp(std::size_t from, std::size_t count) {
        const Words kept = Below(from + 1);
        const std::size_t whole = count / kWordBits, bits = count % kWordBits;
        Words moved{};
        for (std::size_t k = words_.size(); k-- > whole;) {
            moved[k] = (words_[k - whole] & ~kept[k - whole]) << bits;
            if (bits > 0 && k > whole) moved[k] |= (words_[k - whole - 1] & ~kept[k - whole - 1]) >> (kWordBits - bits);
        }
        for (std::size_t k = 0; k < words_.size(); ++k) words_[k] = (words_[k] & kept[k]) | moved[k];
    }

    /// Bits above from + count move down by count; the count bits above from are lost.
    void MoveDown(std::size_t from, std::size_t count) {
        const Words kept = Below(from + 1);
        const std::size_t whole = count / kWordBits, bits = count % kWordBits;
        for (std::size_t k = 0; k < words_.size(); ++k) {
            std::uint64_t moved = k + whole < words_.size() ? words_[k + whole] >> bits : 0;
            if (bits > 0 && k + whole + 1 < words_.size()) moved |= words_[k + whole + 1] << (kWordBits - bits);
            words_[k] = (words_[k] & kept[k]) | (moved & ~kept[k]);
        }
    }

private:
    using Words = std::array<std::uint64_t, 57>;

    /// Ones for the bits below limit.
    static Words Below(std::size_t limit) {
        Words ones{};
        for (std::size_t k = 0; k < ones.size() && k * kWordBits < limit; ++k) {
            const std::size_t bits = limit - k * kWordBits;
            ones[k] = bits >= kWordBits ? ~std::uint64_t{0} : (std::uint64_t{1} << bits) - 1;
        }
        return ones;
    }

    Words words_{};
};

}  // namespace

void IndexPageEdit::Shift(std::size_t from, std::ptrdiff_t count) {
    const std::size_t used = page_.Used();
    const auto mask = bytes_.subspan(shape_.maskAt, shape_.entriesAt - shape_.maskAt);
    MaskWords words(mask);
    if (count > 0) {
        std::memmove(Entries() + from + count, Entries() + from, used - from);
        words.MoveUp(from, static_cast<std::size_t>(count));
    } else {
        const auto gone = static_cast<std::size_t>(-count);
        std::memmove(Entries() + from, Entries() + from + gone, used - from - gone);
        words.MoveDown(from, gone);
    }
    words.Store(mask);
    SetUsed(used + static_cast<std::size_t>(count));
}

void IndexPageEdit::SetUsed(std::size_t used) {
    const std::size_t free = shape_.Area() - used;
    bytes_[2] = static_cast<std::uint8_t>(free & 0xFF);
    bytes_[3] = static_cast<std::uint8_t>(free >> 8);
}

void IndexPageEdit::SetBoundary(std::size_t offset) {
    bytes_[shape_.maskAt + offset / 8] |= static_cast<std::uint8_t>(1U << (offset % 8));
}

bool IndexPageEdit::Insert(std::size_t start, std::string_view entry) {
    const std::size_t prefix = page_.PrefixLength(), used = page_.Used();
    if (prefix > 0 && (entry.size() <= prefix || std::memcmp(Entries(), entry.data(), prefix) != 0)) return false;
    const std::string_view rest = entry.substr(prefix);
    if (rest.size() > shape_.Area() - used) return false;
    if (start == used && start > 0) {
        SetUsed(used + rest.size());
        std::memcpy(Entries() + start, rest.data(), rest.size());
        SetBoundary(start + rest.size());
        return true;
    }
    // A new first entry stands whole: the prefix stays where it is, and the entry that was first goes on without it.
    const std::size_t at = start == 0 ? prefix : start;
    Shift(at, static_cast<std::ptrdiff_t>(rest.size()));
    std::memcpy(Entries() + at, rest.data(), rest.size());
    SetBoundary(at + rest.size());
    return true;
}

void IndexPageEdit::Remove(std::size_t start) {
    const std::size_t end = page_.EndOf(start);
    if (start == 0 && end == page_.Used()) {
        std::memset(bytes_.data() + shape_.maskAt, 0, shape_.entriesAt - shape_.maskAt);
        std::memset(bytes_.data() + shape_.prefixAt, 0, shape_.prefixBytes);
        return SetUsed(0);
    }
    const std::size_t from = start == 0 ? page_.PrefixLength() : start;
    Shift(from, -static_cast<std::ptrdiff_t>(end - from));
    const bool oneIsLeft = page_.EndOf(0) == page_.Used() - (end - from);
    if (oneIsLeft) std::memset(bytes_.data() + shape_.prefixAt, 0, shape_.prefixBytes);
}

}  // namespace varnel::access
